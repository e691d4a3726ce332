#include "NyBookPdf.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

#include <qpdf/Pipeline.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <QBuffer>
#include <QColorSpace>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QFuture>
#include <QHash>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QSet>
#include <QTemporaryFile>
#include <QThread>
#include <QThreadPool>
#include <QtConcurrent/QtConcurrentRun>

#include <NyImageLoader.h>
#include <NyTranslation.h>

#include "NyBookRenderer.h"
#include "NyPageLayout.h"
#include "NyPrintPhoto.h"

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr double MM_PER_INCH = 25.4;
constexpr double POINTS_PER_MM = 72 / MM_PER_INCH;
/** Units in which pages are painted: fine enough for whole ones to be exact in print. */
constexpr int UNITS_PER_INCH = 1200;
constexpr double SMALLEST_PAGE_MM = 10;
/** ISO 32000-1, annex C.2: 14,400 points a side. */
constexpr double LARGEST_PAGE_MM = 5000;
/** Each takes the memory of a decoded photo: four of a usual camera, or one that is huge. */
constexpr int MOST_LOADED_AT_A_TIME = 4;
constexpr qint64 MOST_PIXELS_LOADED_AT_A_TIME = 64'000'000;
/** What the photos' places are painted with begins with this. */
constexpr auto MARKER_SCHEME = "marker"_L1;

/** Thrown through qpdf, which knows no other way to stop. No std::exception: those it would wrap into errors of its own. */
struct CancelledError
{
};
struct WriteError
{
    explicit WriteError(const QFileDevice &file)
        : reason(file.errorString())
        , isDiskFull(file.error() == QFileDevice::ResourceError)
    {
    }
    QString reason;
    bool isDiskFull;
};

/** What does not fit on the disk is written in part first, and only the next attempt says why. */
void writeAll(QFileDevice &file, const char *data, qint64 size)
{
    while (size > 0) {
        const qint64 count = file.write(data, size);
        if (count <= 0)
            throw WriteError(file);
        data += count;
        size -= count;
    }
}

/** A photo file of the book. */
struct Photo
{
    QString path;
    QString name;
    QSize uprightPx;
    NyPrintPhoto::Need need;
    bool isMissing = false;
};

struct Page
{
    NyBookRenderer::PageKind kind = NyBookRenderer::PageKind::Inner;
    const NyBookPage *page = nullptr;
    /** Index of the file of each of the page's photos. */
    QList<int> photos;
};

/** The part of the upright picture that the place shows. */
QRectF shownPart(const NyPlacedFoto &foto)
{
    QTransform upright;
    upright.translate(0.5, 0.5).rotate(-foto.rotationDegrees).translate(-0.5, -0.5);
    return upright.mapRect(foto.crop) & QRectF(0, 0, 1, 1);
}

void addNeed(Photo &photo, const NyPlacedFoto &foto)
{
    const QSize box = NyBookRenderer::boxPx(foto, foto.rectMm.size() / MM_PER_INCH * NyBookPdf::Dpi, 1.0);
    NyPrintPhoto::Need &need = photo.need;
    const bool isFirst = need.uprightPx.isEmpty();
    need.part = isFirst ? shownPart(foto) : need.part | shownPart(foto);
    need.uprightPx = need.uprightPx.expandedTo(box);
}

/** The content of the streams of the PDF until it is written: a file without a name, which is gone with this. */
class Spool
{
public:
    struct Part
    {
        qint64 begin = 0;
        qint64 size = 0;
    };

    explicit Spool(const QString &folder)
        : m_file(folder + u"/.velmora-pdf.XXXXXX"_s)
    {
        if (!m_file.open())
            fail();
    }

    Part add(const QByteArray &bytes)
    {
        const Part part{m_file.pos(), bytes.size()};
        writeAll(m_file, bytes.constData(), bytes.size());
        if (!m_file.flush())
            fail();
        return part;
    }

    void copyTo(Pipeline &pipeline, const Part &part)
    {
        if (!m_file.seek(part.begin))
            fail();
        QByteArray block(256 * 1024, Qt::Uninitialized);
        for (qint64 left = part.size; left > 0;) {
            const qint64 count = m_file.read(block.data(), std::min<qint64>(left, block.size()));
            if (count <= 0)
                fail();
            pipeline.write(reinterpret_cast<const unsigned char *>(block.constData()), size_t(count));
            left -= count;
        }
        pipeline.finish();
    }

private:
    [[noreturn]] void fail() { throw WriteError(m_file); }

    QTemporaryFile m_file;
};

/** A photo whose data lies in the spool. */
struct StoredPhoto
{
    /** Without its data. */
    NyPrintPhoto form;
    Spool::Part jpeg;
    Spool::Part opacity;
};

/** Gives qpdf a stream out of the spool when it is written. */
class SpooledStream : public QPDFObjectHandle::StreamDataProvider
{
public:
    SpooledStream(Spool &spool, const Spool::Part &part, std::function<void()> written)
        : m_spool(spool)
        , m_part(part)
        , m_written(std::move(written))
    {
    }

    void provideStreamData(const QPDFObjGen &, Pipeline *pipeline) override
    {
        m_spool.copyTo(*pipeline, m_part);
        if (const auto written = std::exchange(m_written, {}))
            written();
    }

private:
    Spool &m_spool;
    const Spool::Part m_part;
    std::function<void()> m_written;
};

/** Where qpdf writes to. */
class FilePipeline : public Pipeline
{
public:
    FilePipeline(QFileDevice &file, const std::atomic_bool &isCancelled)
        : Pipeline("book", nullptr)
        , m_file(file)
        , m_isCancelled(isCancelled)
    {
    }

    void write(const unsigned char *data, size_t size) override
    {
        if (m_isCancelled)
            throw CancelledError();
        writeAll(m_file, reinterpret_cast<const char *>(data), qint64(size));
    }
    void finish() override { }

private:
    QFileDevice &m_file;
    const std::atomic_bool &m_isCancelled;
};

QPDFObjectHandle real(double value)
{
    return QPDFObjectHandle::newReal(value, 5);
}

QPDFObjectHandle name(const char *value)
{
    return QPDFObjectHandle::newName(value);
}

QPDFObjectHandle box(double insetMm, const QSizeF &mm)
{
    const double inset = insetMm * POINTS_PER_MM;
    return QPDFObjectHandle::newArray(
        {real(inset), real(inset), real(mm.width() * POINTS_PER_MM - inset), real(mm.height() * POINTS_PER_MM - inset)});
}

/** One writing of a book. Failures come as exceptions. */
class Writing
{
public:
    using State = NyBookPdf::Result::State;

    Writing(
        const NyBookProject &project, const NyDesignStyle &style, const NyBookPdf::Progress &progress, const std::atomic_bool &isCancelled)
        : m_project(project)
        , m_style(style)
        , m_progress(progress)
        , m_isCancelled(isCancelled)
        , m_mediaMm(project.pageSizeMm + QSizeF(2 * NyBookPdf::BleedMm, 2 * NyBookPdf::BleedMm))
    {
        addPage(NyBookRenderer::PageKind::Cover, project.cover);
        for (const NyBookPage &page : project.pages)
            addPage(NyBookRenderer::PageKind::Inner, page);
        // Each photo is read and written.
        m_stepCount = 2 * int(m_photos.size()) + int(m_pages.size());
    }

    NyBookPdf::Result run(QSaveFile &file, NyBookPdf::MissingPhotos missingPhotos)
    {
        NyBookPdf::Result result;
        report(0);
        look();
        // What is plainly missing is told before hours of work, and what turns out to be damaged after it.
        const bool refuses = missingPhotos == NyBookPdf::MissingPhotos::Refuse;
        if (!refuses || missing().isEmpty())
            load(QFileInfo(file.fileName()).absolutePath());
        result.missing = missing();
        if (refuses && !result.missing.isEmpty()) {
            result.state = State::PhotosMissing;
            return result;
        }
        result.lowResolutionCount = lowResolutionCount();
        const QByteArray pages = paintPages();
        writePdf(pages, file);
        result.state = State::Written;
        return result;
    }

    qsizetype pageCount() const { return m_pages.size(); }
    qsizetype photoCount() const { return m_photos.size(); }
    qsizetype originalCount() const
    {
        return std::count_if(m_stored.cbegin(), m_stored.cend(), [](const StoredPhoto &photo) { return photo.form.isOriginal; });
    }

private:
    void addPage(NyBookRenderer::PageKind kind, const NyBookPage &page)
    {
        Page added{kind, &page, {}};
        for (const NyPlacedFoto &foto : page.photos) {
            const int next = int(m_photos.size());
            const int index = m_indices.value(foto.url, next);
            if (index == next) {
                m_indices.insert(foto.url, index);
                m_photos.append({foto.url.toLocalFile(), foto.url.fileName(), {}, {}, false});
            }
            addNeed(m_photos[index], foto);
            added.photos.append(index);
        }
        m_pages.append(added);
    }

    void checkCancelled() const
    {
        if (m_isCancelled)
            throw CancelledError();
    }

    void report(int steps)
    {
        m_doneCount += steps;
        if (m_progress)
            m_progress(m_doneCount, m_stepCount);
    }

    QStringList missing() const
    {
        QStringList names;
        for (const Photo &photo : m_photos) {
            if (photo.isMissing)
                names.append(photo.name);
        }
        return names;
    }

    /** Finds out which files can be read, from their headers. */
    void look()
    {
        for (Photo &photo : m_photos) {
            checkCancelled();
            // The loader names the file in its warning, but for a URL that is no file it has no name.
            if (photo.path.isEmpty())
                qWarning() << "pdf: no local file:" << photo.name;
            else
                photo.uprightPx = NyImageLoader::instance().orientedSize(photo.path);
            photo.isMissing = photo.uprightPx.isEmpty();
        }
    }

    /** Several photos at a time, but no more than have room in memory together. */
    void load(const QString &folder)
    {
        m_spool = std::make_unique<Spool>(folder);
        m_stored.resize(m_photos.size());
        // Ends last: it waits for what is still being read.
        QThreadPool pool;
        pool.setMaxThreadCount(std::clamp(QThread::idealThreadCount(), 1, MOST_LOADED_AT_A_TIME));
        std::deque<QFuture<std::optional<NyPrintPhoto>>> ahead;
        qint64 pixelsAhead = 0;
        const auto pixelsOf = [this](qsizetype i) { return qint64(m_photos.at(i).uprightPx.width()) * m_photos.at(i).uprightPx.height(); };
        qsizetype next = 0;
        for (qsizetype i = 0; i < m_photos.size(); ++i) {
            for (; next < m_photos.size() && ahead.size() < size_t(pool.maxThreadCount()); ++next) {
                if (!ahead.empty() && pixelsAhead + pixelsOf(next) > MOST_PIXELS_LOADED_AT_A_TIME)
                    break;
                pixelsAhead += pixelsOf(next);
                ahead.push_back(QtConcurrent::run(&pool, [photo = m_photos.at(next)]() -> std::optional<NyPrintPhoto> {
                    return photo.isMissing ? std::nullopt : NyPrintPhoto::load(photo.path, photo.uprightPx, photo.need);
                }));
            }
            checkCancelled();
            std::optional<NyPrintPhoto> loaded = ahead.front().takeResult();
            ahead.pop_front();
            pixelsAhead -= pixelsOf(i);
            if (loaded)
                m_stored[i] = store(std::move(*loaded));
            else
                m_photos[i].isMissing = true;
            // What is missing is never written.
            report(loaded ? 1 : 2);
        }
    }

    StoredPhoto store(NyPrintPhoto &&form)
    {
        StoredPhoto stored;
        stored.jpeg = m_spool->add(std::exchange(form.jpeg, {}));
        if (!form.opacity.isEmpty())
            stored.opacity = m_spool->add(std::exchange(form.opacity, {}));
        // Those of one camera are the same.
        form.iccProfile = *m_iccProfiles.insert(form.iccProfile);
        stored.form = std::move(form);
        return stored;
    }

    int lowResolutionCount() const
    {
        int count = 0;
        for (const Page &page : m_pages) {
            for (qsizetype i = 0; i < page.photos.size(); ++i) {
                const Photo &photo = m_photos.at(page.photos.at(i));
                NyPlacedFoto foto = page.page->photos.at(i);
                foto.sizePx = photo.uprightPx;
                count += !photo.isMissing && foto.printedDpi() < NyPageLayout::RecommendedDpi ? 1 : 0;
            }
        }
        return count;
    }

    /**
     * The pages as Qt writes them, without photos: in the place of a page's photo number n there is a picture of n+1 pixels, and
     * nothing in the place of one that is missing.
     */
    QByteArray paintPages()
    {
        QByteArray pdf;
        QBuffer buffer(&pdf);
        buffer.open(QIODevice::WriteOnly);
        QPdfWriter device(&buffer);
        device.setPdfVersion(QPagedPaintDevice::PdfVersion_1_6);
        device.setTitle(m_project.title);
        device.setCreator((QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion()).trimmed());
        device.setResolution(UNITS_PER_INCH);
        // Qt knows whole points only; the upper left corner is what the exact boxes are then measured from.
        const QSizeF points(std::ceil(m_mediaMm.width() * POINTS_PER_MM), std::ceil(m_mediaMm.height() * POINTS_PER_MM));
        device.setPageSize(QPageSize(points, QPageSize::Point, QString(), QPageSize::ExactMatch));
        device.setPageMargins(QMarginsF());

        const NyBookRenderer renderer(m_style, [](const QUrl &url, const QSize &) -> NyBookRenderer::Picture {
            QImage image(url.path().toInt() + 1, 1, QImage::Format_RGB32);
            image.fill(Qt::white);
            return {NyBookRenderer::Picture::State::Ready, image};
        });
        constexpr double unitsPerMm = UNITS_PER_INCH / MM_PER_INCH;
        const double bleed = NyBookPdf::BleedMm * unitsPerMm;
        const QRectF trim(QPointF(bleed, bleed), m_project.pageSizeMm * unitsPerMm);
        QPainter painter(&device);
        bool isFirst = true;
        for (const Page &page : std::as_const(m_pages)) {
            checkCancelled();
            if (!std::exchange(isFirst, false))
                device.newPage();
            NyBookPage marked;
            marked.texts = page.page->texts;
            for (qsizetype i = 0; i < page.photos.size(); ++i) {
                if (m_photos.at(page.photos.at(i)).isMissing || page.page->photos.at(i).crop.isEmpty())
                    continue;
                NyPlacedFoto marker;
                marker.rectMm = page.page->photos.at(i).rectMm;
                marker.url.setScheme(MARKER_SCHEME);
                marker.url.setPath(QString::number(i));
                marked.photos.append(marker);
            }
            renderer.paint(painter, marked, page.kind, m_project.pageSizeMm, trim, 1.0, NyBookPdf::BleedMm);
            report(1);
        }
        painter.end();
        return pdf;
    }

    void writePdf(const QByteArray &pages, QSaveFile &file)
    {
        QPDF pdf;
        pdf.setSuppressWarnings(true);
        pdf.processMemoryFile("pages", pages.constData(), size_t(pages.size()));
        m_pdf = &pdf;
        m_images.assign(size_t(m_photos.size()), QPDFObjectHandle());
        m_sRgb = profile(QColorSpace(QColorSpace::SRgb).iccProfile(), 3);

        QPDFObjectHandle root = pdf.getRoot();
        root.replaceKey("/Lang", QPDFObjectHandle::newUnicodeString(NyTranslation::locale().bcp47Name().toStdString()));
        // The first page stands alone, on the right.
        root.replaceKey("/PageLayout", name("/TwoPageRight"));
        QPDFObjectHandle preferences = QPDFObjectHandle::newDictionary();
        preferences.replaceKey("/DisplayDocTitle", QPDFObjectHandle::newBool(true));
        preferences.replaceKey("/PrintScaling", name("/None"));
        root.replaceKey("/ViewerPreferences", preferences);
        pdf.getTrailer().getKey("/Info").replaceKey("/Trapped", name("/False"));

        const std::vector<QPDFPageObjectHelper> painted = QPDFPageDocumentHelper(pdf).getAllPages();
        if (painted.size() != size_t(m_pages.size()))
            throw std::logic_error("not as many pages as were painted");
        for (size_t i = 0; i < painted.size(); ++i) {
            checkCancelled();
            finishPage(painted[i], m_pages.at(qsizetype(i)));
        }

        FilePipeline pipeline(file, m_isCancelled);
        QPDFWriter writer(pdf);
        writer.setOutputPipeline(&pipeline);
        // No stream is decoded: what the photos are coded with stays.
        writer.setDecodeLevel(qpdf_dl_none);
        writer.setMinimumPDFVersion("1.6");
        writer.write();
        m_pdf = nullptr;
    }

    void finishPage(QPDFPageObjectHelper painted, const Page &page)
    {
        QPDFObjectHandle dictionary = painted.getObjectHandle();
        const double paintedHeight = painted.getMediaBox().getArrayAsRectangle().ury;
        const double shift = m_mediaMm.height() * POINTS_PER_MM - paintedHeight;
        dictionary.replaceKey("/MediaBox", box(0, m_mediaMm));
        dictionary.replaceKey("/BleedBox", box(0, m_mediaMm));
        dictionary.replaceKey("/TrimBox", box(NyBookPdf::BleedMm, m_mediaMm));
        painted.addPageContents(m_pdf->newStream("q 1 0 0 1 0 " + QByteArray::number(shift, 'f', 5).toStdString() + " cm\n"), true);
        painted.addPageContents(m_pdf->newStream("\nQ\n"), false);

        QPDFObjectHandle resources = painted.getAttribute("/Resources", true);
        QPDFObjectHandle spaces = resources.getKey("/ColorSpace");
        if (!spaces.isDictionary())
            spaces = resources.replaceKeyAndGetNew("/ColorSpace", QPDFObjectHandle::newDictionary());
        spaces.replaceKey("/DefaultRGB", m_sRgb);
        QPDFObjectHandle objects = resources.getKey("/XObject");
        if (!objects.isDictionary())
            return;
        for (const std::string &key : objects.getKeys()) {
            const int number = int(objects.getKey(key).getDict().getKey("/Width").getIntValue()) - 1;
            if (number < 0 || number >= page.photos.size())
                throw std::logic_error("a picture that no photo stands for");
            objects.replaceKey(key, placed(page.page->photos.at(number), page.photos.at(number)));
        }
    }

    /** The photo as it is placed, as a form that fills the square of one by one, as a picture does. */
    QPDFObjectHandle placed(const NyPlacedFoto &foto, int photo)
    {
        const QTransform flip(1, 0, 0, -1, 0, 1);
        QTransform turn;
        turn.translate(0.5, 0.5).rotate(foto.rotationDegrees).translate(-0.5, -0.5);
        const QTransform crop = QTransform::fromTranslate(-foto.crop.x(), -foto.crop.y())
            * QTransform::fromScale(1 / foto.crop.width(), 1 / foto.crop.height());
        const QTransform matrix = flip * m_stored.at(photo).form.toUpright * turn * crop * flip;
        std::string content;
        for (const double value : {matrix.m11(), matrix.m12(), matrix.m21(), matrix.m22(), matrix.dx(), matrix.dy()})
            content += QByteArray::number(value, 'f', 8).toStdString() + ' ';
        content += "cm /Photo Do\n";

        QPDFObjectHandle form = m_pdf->newStream(content);
        QPDFObjectHandle dictionary = form.getDict();
        dictionary.replaceKey("/Type", name("/XObject"));
        dictionary.replaceKey("/Subtype", name("/Form"));
        // A clip along the edges of a whole photo would only blur them.
        const int slack = foto.crop == QRectF(0, 0, 1, 1) ? 1 : 0;
        dictionary.replaceKey("/BBox", QPDFObjectHandle::newArray({real(-slack), real(-slack), real(1 + slack), real(1 + slack)}));
        QPDFObjectHandle objects = QPDFObjectHandle::newDictionary();
        objects.replaceKey("/Photo", image(photo));
        dictionary.replaceKey("/Resources", QPDFObjectHandle::newDictionary({{"/XObject", objects}}));
        return form;
    }

    QPDFObjectHandle image(int photo)
    {
        QPDFObjectHandle &image = m_images.at(size_t(photo));
        if (image.isInitialized())
            return image;
        const StoredPhoto &stored = m_stored.at(photo);
        const NyPrintPhoto &form = stored.form;
        image = stream(form.sizePx, stored.jpeg, "/DCTDecode", [this] {
            report(1);
            checkCancelled();
        });
        QPDFObjectHandle space = name("/DeviceGray");
        if (!form.iccProfile.isEmpty())
            space = profile(form.iccProfile, form.componentCount);
        else if (form.componentCount == 3)
            space = m_sRgb;
        image.getDict().replaceKey("/ColorSpace", space);
        if (stored.opacity.size > 0) {
            QPDFObjectHandle mask = stream(form.sizePx, stored.opacity, "/FlateDecode", {});
            mask.getDict().replaceKey("/ColorSpace", name("/DeviceGray"));
            image.getDict().replaceKey("/SMask", mask);
        }
        return image;
    }

    QPDFObjectHandle stream(const QSize &sizePx, const Spool::Part &part, const char *filter, std::function<void()> written)
    {
        QPDFObjectHandle image = m_pdf->newStream();
        image.replaceStreamData(
            std::make_shared<SpooledStream>(*m_spool, part, std::move(written)), name(filter), QPDFObjectHandle::newNull());
        QPDFObjectHandle dictionary = image.getDict();
        dictionary.replaceKey("/Type", name("/XObject"));
        dictionary.replaceKey("/Subtype", name("/Image"));
        dictionary.replaceKey("/Width", QPDFObjectHandle::newInteger(sizePx.width()));
        dictionary.replaceKey("/Height", QPDFObjectHandle::newInteger(sizePx.height()));
        dictionary.replaceKey("/BitsPerComponent", QPDFObjectHandle::newInteger(8));
        return image;
    }

    /** The colour space of an ICC profile, which all photos of one camera share. */
    QPDFObjectHandle profile(const QByteArray &icc, int componentCount)
    {
        QPDFObjectHandle &space = m_profiles[icc];
        if (space.isInitialized())
            return space;
        QPDFObjectHandle stream = m_pdf->newStream(icc.toStdString());
        stream.getDict().replaceKey("/N", QPDFObjectHandle::newInteger(componentCount));
        stream.getDict().replaceKey("/Alternate", name(componentCount == 1 ? "/DeviceGray" : "/DeviceRGB"));
        space = m_pdf->makeIndirectObject(QPDFObjectHandle::newArray({name("/ICCBased"), stream}));
        return space;
    }

    const NyBookProject &m_project;
    const NyDesignStyle &m_style;
    const NyBookPdf::Progress &m_progress;
    const std::atomic_bool &m_isCancelled;
    /** Of a page with its bleed. */
    const QSizeF m_mediaMm;

    QList<Photo> m_photos;
    QHash<QUrl, int> m_indices;
    QList<Page> m_pages;
    int m_stepCount = 0;
    int m_doneCount = 0;

    std::unique_ptr<Spool> m_spool;
    /** One for each photo; empty for those that are missing. */
    QList<StoredPhoto> m_stored;
    QSet<QByteArray> m_iccProfiles;

    /** While it is put together. */
    QPDF *m_pdf = nullptr;
    std::vector<QPDFObjectHandle> m_images;
    QHash<QByteArray, QPDFObjectHandle> m_profiles;
    QPDFObjectHandle m_sRgb;
};

}

NyBookPdf::NyBookPdf(const NyBookProject &project, const NyDesignStyle &style)
    : m_project(project)
    , m_style(style)
{
}

NyBookPdf::Result NyBookPdf::write(
    const QString &path, MissingPhotos missingPhotos, const Progress &progress, const std::atomic_bool &isCancelled) const
{
    const QString shownPath = QDir::toNativeSeparators(path);
    Result failed;
    const QSizeF page = m_project.pageSizeMm;
    if (!(std::min(page.width(), page.height()) >= SMALLEST_PAGE_MM && std::max(page.width(), page.height()) <= LARGEST_PAGE_MM)) {
        qWarning() << "pdf: no page for" << path << "can have the size" << page << "mm";
        failed.error = tr("Die Datei \"%1\" kann nicht geschrieben werden: Die Seiten haben keine druckbare Größe.").arg(shownPath);
        return failed;
    }
    QSaveFile file(path);
    // Before the work, so that an unwritable folder is told at once.
    if (!file.open(QIODevice::WriteOnly)) {
        qWarning() << "pdf: cannot write" << path << ":" << file.errorString();
        failed.error = tr("Die Datei \"%1\" kann nicht geschrieben werden.").arg(shownPath);
        return failed;
    }
    QString reason;
    try {
        Writing writing(m_project, m_style, progress, isCancelled);
        Result result = writing.run(file, missingPhotos);
        if (result.state != Result::State::Written)
            return result;
        // commit() alone reports success after a buffered write that did not fit on the disk, and leaves an empty file.
        if (!file.flush() || file.error() != QFileDevice::NoError)
            throw WriteError(file);
        const qint64 size = file.size();
        if (!file.commit())
            throw WriteError(file);
        qInfo() << "pdf: wrote" << path << "pages" << writing.pageCount() << "photos" << writing.photoCount() << "as they were"
                << writing.originalCount() << "missing" << result.missing.size() << "bytes" << size;
        return result;
    } catch (const CancelledError &) {
        failed.state = Result::State::Cancelled;
        return failed;
    } catch (const WriteError &error) {
        if (error.isDiskFull)
            failed.error = tr("Für die Datei \"%1\" ist nicht genug Platz vorhanden.").arg(shownPath);
        reason = error.reason;
    } catch (const std::exception &exception) {
        reason = QString::fromStdString(exception.what());
    }
    if (failed.error.isEmpty())
        failed.error = tr("Die Datei \"%1\" kann nicht geschrieben werden.").arg(shownPath);
    qWarning() << "pdf: cannot write" << path << ":" << reason;
    return failed;
}
