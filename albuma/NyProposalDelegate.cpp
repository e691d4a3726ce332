#include "NyProposalDelegate.h"

#include <algorithm>

#include <QPainter>
#include <QPainterPath>
#include <QTextLayout>

#include <NyGUIWidgetsConfig.h>

#include "NyPreviewCache.h"
#include "NyProposal.h"
#include "NyProposalModel.h"

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr int Gap = 8;
constexpr int Padding = 12;
constexpr double Radius = 8;
constexpr int HeadlineLines = 2;
constexpr int FurtherLines = 2;
/** Covers have the proportions of a page, 4 to 3. */
constexpr double PreviewShape = 0.75;
const QColor Red(0xc3, 0x0c, 0x15);

QColor mixed(const QColor &a, const QColor &b, double share)
{
    const auto channel = [share](int x, int y) { return int(x + (y - x) * share); };
    return QColor(channel(a.red(), b.red()), channel(a.green(), b.green()), channel(a.blue(), b.blue()));
}

QFont headlineFont(const QFont &font)
{
    QFont result = font;
    result.setPointSizeF(font.pointSizeF() * 1.1);
    result.setWeight(QFont::DemiBold);
    return result;
}

QFont badgeFont(const QFont &font)
{
    QFont result = font;
    result.setPointSizeF(font.pointSizeF() * 0.85);
    result.setBold(true);
    return result;
}

/** Writes at most @p lines lines, the last one shortened, and returns where the next text begins. */
int paintText(QPainter &painter, const QString &text, const QFont &font, const QRect &rect, int lines)
{
    const QFontMetrics metrics(font);
    painter.setFont(font);
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    int y = rect.top();
    for (int i = 0; i < lines; ++i) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(rect.width());
        const bool isLast = i == lines - 1;
        const QString rest = text.mid(line.textStart());
        const QString shown
            = isLast ? metrics.elidedText(rest, Qt::ElideRight, rect.width()) : text.mid(line.textStart(), line.textLength());
        painter.drawText(QRect(rect.left(), y, rect.width(), metrics.height()), Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine,
            shown.trimmed());
        y += metrics.height();
    }
    layout.endLayout();
    return y;
}

/** A book without a picture: for previews that are missing or cannot be read. */
void paintPlainCover(QPainter &painter, const QRectF &rect, const QPalette &palette)
{
    const QColor paper = mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.1);
    painter.setPen(Qt::NoPen);
    painter.setBrush(paper);
    painter.drawRoundedRect(rect, 3, 3);
    painter.setBrush(mixed(paper, palette.color(QPalette::Text), 0.12));
    painter.drawRect(QRectF(rect.left() + rect.width() * 0.05, rect.top(), 2, rect.height()));
    const double side = rect.height() * 0.3;
    const QRectF icon(rect.center() - QPointF(side, side) / 2, QSizeF(side, side));
    painter.save();
    painter.setOpacity(painter.opacity() * 0.4);
    NyGUIWidgetsConfig::instance().loadIconById(u"ico_albuma"_s).paint(&painter, icon.toAlignedRect());
    painter.restore();
}

void paintPreview(QPainter &painter, const NyPreviewCache::Preview &preview, const QRectF &box, const QPalette &palette)
{
    if (preview.state == NyPreviewCache::State::Loading) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.06));
        painter.drawRoundedRect(box, 3, 3);
        return;
    }
    if (preview.image.isNull()) {
        paintPlainCover(painter, box, palette);
        return;
    }
    const QSizeF size = QSizeF(preview.image.size()).scaled(box.size(), Qt::KeepAspectRatio);
    const QRectF target(box.center() - QPointF(size.width(), size.height()) / 2, size);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 36));
    painter.drawRoundedRect(target.adjusted(-1, 0, 2, 3), 3, 3);
    painter.drawImage(target, preview.image);
    painter.setPen(QPen(QColor(0, 0, 0, 50), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(target.adjusted(0.5, 0.5, -0.5, -0.5));
}

void paintBadge(QPainter &painter, const QString &text, const QFont &font, const QPointF &topLeft)
{
    const QFontMetricsF metrics(font);
    const QRectF badge(topLeft, QSizeF(metrics.horizontalAdvance(text) + 16, metrics.height() + 4));
    painter.setPen(QPen(Qt::white, 1.5));
    painter.setBrush(Red);
    painter.drawRoundedRect(badge, badge.height() / 2, badge.height() / 2);
    painter.setFont(font);
    painter.drawText(badge, Qt::AlignCenter, text);
}

}

NyProposalDelegate::NyProposalDelegate(NyPreviewCache &previews, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_previews(previews)
{
}

NyProposalDelegate::~NyProposalDelegate() = default;

int NyProposalDelegate::cardHeight(int widthUnits, const QFont &font)
{
    const int previewHeight = int((widthUnits - 2 * (Gap + Padding)) * PreviewShape);
    return 2 * (Gap + Padding) + previewHeight + Gap + HeadlineLines * QFontMetrics(headlineFont(font)).height()
        + FurtherLines * QFontMetrics(font).height() + 4;
}

QSize NyProposalDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    const int width = option.decorationSize.width();
    return {width, cardHeight(width, option.font)};
}

void NyProposalDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const auto proposal = index.data(NyProposalModel::ProposalRole).value<NyProposal>();
    const QPalette &palette = option.palette;
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const bool isHovered = option.state.testFlag(QStyle::State_MouseOver);
    const bool hasFocus = option.state.testFlag(QStyle::State_HasFocus);
    const QColor accent = palette.color(QPalette::Active, QPalette::Highlight);
    const QColor base = palette.color(QPalette::Base);

    painter->save();
    painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter->setClipRect(option.rect);
    const QRect card = option.rect.adjusted(Gap, Gap, -Gap, -Gap);
    QColor surface = base;
    if (isSelected)
        surface = mixed(base, accent, 0.16);
    else if (isHovered)
        surface = mixed(base, accent, 0.07);
    const QColor frame = isSelected || hasFocus ? accent : mixed(base, palette.color(QPalette::Text), 0.16);
    painter->setBrush(surface);
    painter->setPen(QPen(frame, isSelected ? 2 : 1));
    painter->drawRoundedRect(QRectF(card).adjusted(1, 1, -1, -1), Radius, Radius);

    const QRect inner = card.adjusted(Padding, Padding, -Padding, -Padding);
    const QRect box(inner.left(), inner.top(), inner.width(), int(inner.width() * PreviewShape));
    if (proposal.state == NyProposal::State::NoProject)
        painter->setOpacity(0.5);
    const double ratio = painter->device()->devicePixelRatioF();
    paintPreview(*painter, m_previews.preview(proposal, box.size() * ratio), box, palette);
    painter->setOpacity(1);
    if (proposal.isUnread)
        paintBadge(*painter, tr("Neu"), badgeFont(option.font), box.topLeft() - QPointF(6, 5));

    const QColor text = palette.color(QPalette::Text);
    const QColor faint = mixed(text, base, 0.35);
    painter->setPen(text);
    int y = box.bottom() + 1 + Gap;
    const auto rest = [&] { return QRect(inner.left(), y, inner.width(), inner.bottom() - y); };
    y = paintText(*painter, proposal.headline, headlineFont(option.font), rest(), HeadlineLines);
    const QString problem = proposal.problem();
    QStringList last{proposal.dates, proposal.extent()};
    const QString second = proposal.subline.isEmpty() ? last.takeFirst() : proposal.subline;
    last.removeAll(QString());
    painter->setPen(faint);
    if (!second.isEmpty())
        y = paintText(*painter, second, option.font, rest(), 1);
    if (!problem.isEmpty())
        painter->setPen(mixed(text, Red, base.lightness() < 128 ? 0.35 : 0.8));
    paintText(*painter, problem.isEmpty() ? last.join(u" · "_s) : problem, option.font, rest(), second.isEmpty() ? FurtherLines : 1);
    painter->restore();
}
