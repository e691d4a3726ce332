#include "NyVisionMemory.h"

#include <NyFoto.h>
#include <NyOrrinMediaItemBuilder.h>
#include <NyOrrinVisionDescriptorsBuilder.h>
#include <NyOrrinVisionedMediaItem.h>

#include <QTemporaryDir>
#include <QTest>

#include "TestSupport.h"

namespace
{
NyOrrinVisionedMediaItem seen(const QString &id, float sharpness = 7.0F)
{
    orrin::Descriptors descriptors;
    descriptors.isValid = true;
    descriptors.sharpness = sharpness;
    NyOrrinVisionDescriptorsBuilder builder;
    builder.setDescriptors(descriptors);
    return {NyOrrinMediaItemBuilder().setId(id).build(), builder.build()};
}

NyVisionMemory::Content content(const QString &location)
{
    return {location, {1000, 5}};
}
}

class tst_NyVisionMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsNothingAtFirst();
    void remembersWhatWasSeen();
    void keepsWhatAlbumsAreJudgedBy();
    void remembersWhatCannotBeShown();
    void noticesAChangedFile();
    void ignoresWhatIsNoFile();
    void doesNotRememberAPhotoWithoutAPicture();
    void noticesThatAFileMayBeReadNow();
    void forgetsWhatWasNotAskedForLately();
};

void tst_NyVisionMemory::knowsNothingAtFirst()
{
    NyVisionMemory memory;
    QVERIFY(!memory.isValid(content(QStringLiteral("/a.jpg"))));
    QVERIFY(!memory.item(content(QStringLiteral("/a.jpg"))));
}

void tst_NyVisionMemory::remembersWhatWasSeen()
{
    NyVisionMemory memory;
    memory.remember(content(QStringLiteral("/a.jpg")), seen(QStringLiteral("file:///a.jpg"), 12.5F));
    QCOMPARE(memory.isValid(content(QStringLiteral("/a.jpg"))), std::optional<bool>(true));
    const std::optional<NyOrrinVisionedMediaItem> item = memory.item(content(QStringLiteral("/a.jpg")));
    QVERIFY(item);
    QCOMPARE(item->item().id(), QStringLiteral("file:///a.jpg"));
    QCOMPARE(item->descriptors().descriptors().sharpness, 12.5F);
    QVERIFY(!memory.item(content(QStringLiteral("/b.jpg"))));
}

void tst_NyVisionMemory::keepsWhatAlbumsAreJudgedBy()
{
    orrin::Descriptors descriptors;
    descriptors.isValid = true;
    descriptors.hash = 42;
    descriptors.scenes = {{"beach", 0.75F}, {"forest", 0.25F}};
    descriptors.occasions = {{"beach", 0.6F}, {"hiking", 0.1F}};
    NyOrrinVisionDescriptorsBuilder builder;
    builder.setDescriptors(descriptors);
    NyVisionMemory memory;
    memory.remember(content(QStringLiteral("/a.jpg")), {NyOrrinMediaItemBuilder().setRating(4).build(), builder.build()});
    const std::optional<NyOrrinVisionedMediaItem> item = memory.item(content(QStringLiteral("/a.jpg")));
    QVERIFY(item);
    QCOMPARE(item->item().rating(), 4);
    const orrin::Descriptors &kept = item->descriptors().descriptors();
    QCOMPARE(kept.hash, std::uint64_t(42));
    QCOMPARE(kept.occasions.size(), std::size_t(2));
    QCOMPARE(kept.occasions.at(1).keyword, std::string("hiking"));
    // Whether a model looked at the photo counts, the names of what it saw do not.
    QCOMPARE(kept.scenes.size(), std::size_t(1));
    QCOMPARE(kept.scenes.front().label, std::string("beach"));
}

void tst_NyVisionMemory::remembersWhatCannotBeShown()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("broken.jpg"));
    QVERIFY(TestSupport::writeFile(path, "no picture"));
    NyVisionMemory memory;
    const NyVisionMemory::Content broken = NyVisionMemory::contentOf(NyFoto(QFileInfo(path)));
    memory.rememberInvalid(broken);
    QCOMPARE(memory.isValid(broken), std::optional<bool>(false));
    QVERIFY(!memory.item(broken));
}

void tst_NyVisionMemory::noticesAChangedFile()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.jpg"));
    QVERIFY(TestSupport::writePhoto(path, 1));
    NyVisionMemory memory;
    const NyFoto foto{QFileInfo(path)};
    memory.remember(NyVisionMemory::contentOf(foto), seen(foto.urlString()));
    QVERIFY(memory.item(NyVisionMemory::contentOf(foto)));

    QVERIFY(TestSupport::writeFile(path, "something else"));
    QVERIFY(!memory.isValid(NyVisionMemory::contentOf(foto)));
    QVERIFY(!memory.item(NyVisionMemory::contentOf(foto)));
    memory.rememberInvalid(NyVisionMemory::contentOf(foto));
    QCOMPARE(memory.isValid(NyVisionMemory::contentOf(foto)), std::optional<bool>(false));
}

void tst_NyVisionMemory::ignoresWhatIsNoFile()
{
    NyVisionMemory memory;
    const NyVisionMemory::Content missing = NyVisionMemory::contentOf(NyFoto(QFileInfo(QStringLiteral("/missing/a.jpg"))));
    QVERIFY(!missing.isValid());
    memory.remember(missing, seen(QStringLiteral("file:///missing/a.jpg")));
    memory.rememberInvalid(missing);
    QVERIFY(!memory.isValid(missing));
    QVERIFY(!memory.item(missing));
}

void tst_NyVisionMemory::doesNotRememberAPhotoWithoutAPicture()
{
    NyVisionMemory memory;
    const NyOrrinVisionedMediaItem blind(
        NyOrrinMediaItemBuilder().setId(QStringLiteral("file:///a.jpg")).build(), NyOrrinVisionDescriptors());
    memory.remember(content(QStringLiteral("/a.jpg")), blind);
    QVERIFY(!memory.isValid(content(QStringLiteral("/a.jpg"))));
}

void tst_NyVisionMemory::noticesThatAFileMayBeReadNow()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("locked.jpg"));
    QVERIFY(TestSupport::writePhoto(path, 1));
    QVERIFY(QFile::setPermissions(path, {}));
    NyVisionMemory memory;
    const NyFoto foto{QFileInfo(path)};
    memory.rememberInvalid(NyVisionMemory::contentOf(foto));
    QCOMPARE(memory.isValid(NyVisionMemory::contentOf(foto)), std::optional<bool>(false));
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner));
    // The time of the change has the resolution of the kernel's clock.
    QTRY_VERIFY(QFile::setPermissions(path, QFile::ReadOwner) && !memory.isValid(NyVisionMemory::contentOf(foto)));
}

void tst_NyVisionMemory::forgetsWhatWasNotAskedForLately()
{
    // Room for a few dozen photos.
    NyVisionMemory memory(32 * 1024);
    const NyVisionMemory::Content favourite = content(QStringLiteral("/favourite.jpg"));
    memory.remember(favourite, seen(QStringLiteral("file:///favourite.jpg")));
    constexpr int Photos = 1000;
    for (int i = 0; i < Photos; ++i) {
        const QString path = QStringLiteral("/%1.jpg").arg(i);
        memory.remember(content(path), seen(QStringLiteral("file://") + path));
        QVERIFY(memory.item(favourite));
        QVERIFY(memory.item(content(path)));
    }
    int known = 0;
    for (int i = 0; i < Photos; ++i) {
        if (memory.isValid(content(QStringLiteral("/%1.jpg").arg(i))))
            ++known;
    }
    QVERIFY2(known > 0 && known < 100, qPrintable(QString::number(known)));
    QVERIFY(!memory.isValid(content(QStringLiteral("/0.jpg"))));
}

QTEST_GUILESS_MAIN(tst_NyVisionMemory)
#include "tst_NyVisionMemory.moc"
