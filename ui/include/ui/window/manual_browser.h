// ManualBrowser: shows one page of the manual in the colours of the theme.
#pragma once

#include <QTextBrowser>
#include <QTimer>

namespace brindlehum {

class ManualBrowser : public QTextBrowser {
    Q_OBJECT
public:
    explicit ManualBrowser(QWidget* parent = nullptr);

    void showPage(const QUrl& url);
    // Marks every place that has the text and goes to the one after the cursor, or before it; none goes round. Returns
    // how many there are.
    int find(const QString& text, bool backward);

    // It will be made anew, for a new width or theme.
    bool isStale() const { return again_.isActive(); }

    QVariant loadResource(int type, const QUrl& name) override;

Q_SIGNALS:
    void pageAsked(const QUrl& url);  // by a click on a link to another page

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void doSetSource(const QUrl& url, QTextDocument::ResourceType type) override;

private:
    void render();
    int mark();  // returns how many places there are

    QUrl page_;
    QString sought_;
    QTimer again_;  // after a change of width or theme
    int drawnWidth_ = 0;
};

}  // namespace brindlehum
