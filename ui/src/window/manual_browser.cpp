// Sets the Markdown as text, then what Markdown can't say: line height, the look of tables and code, pictures that fit.
#include "ui/window/manual_browser.h"

#include <QEvent>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextFrame>
#include <QTextTable>

#include "ui/look/theme.h"
#include "ui/window/key_list.h"
#include "ui/window/manual_pages.h"

namespace brindlehum {
namespace {

constexpr int margin = 28;         // logical pixels
constexpr int widestColumn = 760;  // beyond it, lines are hard to follow

void dressTable(QTextTable& table, const Theme& theme) {
    QTextTableFormat format = table.format();
    format.setBorderCollapse(true);
    format.setBorder(1);
    format.setBorderBrush(theme.border);
    format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    format.setCellPadding(6);
    format.setTopMargin(4);
    format.setBottomMargin(14);
    format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
    if (table.columns() == 2) {  // alike on the whole page
        format.setColumnWidthConstraints(
            {QTextLength(QTextLength::PercentageLength, 40), QTextLength(QTextLength::PercentageLength, 60)});
    }
    table.setFormat(format);
    // Markdown needs a head; many of ours are empty.
    bool isEmpty = true;
    for (int column = 0; column < table.columns(); ++column) {
        isEmpty = isEmpty && table.cellAt(0, column).firstCursorPosition().block().text().isEmpty();
    }
    if (isEmpty && table.rows() > 1) { table.removeRows(0, 1); }
}

void dressCode(QTextDocument& document, const Theme& theme) {
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        QTextCursor cursor(block);
        QTextBlockFormat format = block.blockFormat();
        const bool isCode =
            format.hasProperty(QTextFormat::BlockCodeFence) || format.hasProperty(QTextFormat::BlockCodeLanguage);
        if (isCode) {
            format.setBackground(theme.control);
        } else if (!QTextCursor(block).currentTable()) {
            format.setLineHeight(128, QTextBlockFormat::ProportionalHeight);
            if (!block.textList()) { format.setBottomMargin(9); }
            if (block.blockFormat().headingLevel() > 0) { format.setTopMargin(block.blockNumber() == 0 ? 4 : 22); }
        }
        cursor.setBlockFormat(format);
    }
}

}  // namespace

ManualBrowser::ManualBrowser(QWidget* parent) : QTextBrowser(parent) {
    setAccessibleName(tr("Page"));
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // One that comes and goes with the page's text would change the width, for which the page is made anew.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setOpenExternalLinks(false);
    again_.setSingleShot(true);
    again_.setInterval(60);
    connect(&again_, &QTimer::timeout, this, &ManualBrowser::render);
}

void ManualBrowser::showPage(const QUrl& url) {
    page_ = url;
    drawnWidth_ = 0;
    render();
    verticalScrollBar()->setValue(0);
}

void ManualBrowser::doSetSource(const QUrl& url, QTextDocument::ResourceType) {
    Q_EMIT pageAsked(url);
}

void ManualBrowser::render() {
    if (page_.isEmpty()) { return; }
    const double place = double(verticalScrollBar()->value()) / std::max(verticalScrollBar()->maximum(), 1);
    const Theme& theme = Theme::of(*this);
    drawnWidth_ = viewport()->width();
    document()->setBaseUrl(page_);
    document()->setDefaultFont([this] {
        QFont larger = font();
        larger.setPointSizeF(larger.pointSizeF() * 1.1);
        return larger;
    }());
    QTextDocument* page = document();
    page->setIndentWidth(22);
    page->clear();
    page->setMarkdown(loadResource(QTextDocument::MarkdownResource, page_).toString());
    dressCode(*page, theme);
    for (QTextFrame* frame : page->rootFrame()->childFrames()) {
        if (auto* table = qobject_cast<QTextTable*>(frame)) { dressTable(*table, theme); }
    }
    QTextFrameFormat root = page->rootFrame()->frameFormat();
    const int side = std::max(margin, viewport()->width() - margin - widestColumn);
    root.setLeftMargin(margin);
    root.setRightMargin(side);
    root.setTopMargin(margin - 8);
    root.setBottomMargin(margin);
    page->rootFrame()->setFrameFormat(root);
    setTextCursor(QTextCursor(page));  // setMarkdown leaves it at the end, and the view would follow
    mark();
    verticalScrollBar()->setValue(int(place * verticalScrollBar()->maximum()));
}

QVariant ManualBrowser::loadResource(int type, const QUrl& name) {
    if (name == keyPageUrl()) { return keyListMarkdown(); }
    const QUrl url = page_.resolved(name);
    if (!url.isLocalFile()) { return {}; }
    QString path = url.toLocalFile();
    if (type != QTextDocument::ImageResource) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }
    const QString own = QString(path).replace("-dark.png", "-light.png");
    if (!Theme::of(*this).dark && QFile::exists(own)) { path = own; }
    QImage picture(path);
    const double dpr = devicePixelRatioF();
    const int width = std::min(viewport()->width() - 2 * margin, widestColumn);
    if (picture.isNull() || width <= 0) { return picture; }
    picture = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    picture = picture.scaledToWidth(int(std::min<double>(picture.width(), width * dpr)), Qt::SmoothTransformation);
    QPainter painter(&picture);
    painter.setPen(QPen(Theme::of(*this).border, 2 * dpr));
    painter.drawRect(picture.rect());
    painter.end();
    picture.setDevicePixelRatio(dpr);
    return picture;
}

int ManualBrowser::find(const QString& text, bool backward) {
    sought_ = text;
    const auto flags = backward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
    QTextCursor next = document()->find(text, textCursor(), flags);
    if (next.isNull()) {
        QTextCursor edge(document());
        if (backward) { edge.movePosition(QTextCursor::End); }
        next = document()->find(text, edge, flags);
    }
    if (!next.isNull()) {
        setTextCursor(next);
        ensureCursorVisible();
    }
    return mark();
}

int ManualBrowser::mark() {
    QList<QTextEdit::ExtraSelection> marks;
    QTextCursor at(document());
    while (!sought_.isEmpty() && !(at = document()->find(sought_, at)).isNull()) {
        QTextEdit::ExtraSelection found;
        found.cursor = at;
        found.format.setBackground(Theme::of(*this).accentGround);
        marks.push_back(found);
    }
    setExtraSelections(marks);
    return int(marks.size());
}

void ManualBrowser::resizeEvent(QResizeEvent* event) {
    QTextBrowser::resizeEvent(event);
    if (viewport()->width() != drawnWidth_) { again_.start(); }
}

void ManualBrowser::changeEvent(QEvent* event) {
    QTextBrowser::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) { again_.start(); }
}

}  // namespace brindlehum
