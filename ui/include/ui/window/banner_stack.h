// BannerStack: notices of what the program lacks, each with a button that helps; empty when all is well.
#pragma once

#include <QWidget>
#include <functional>
#include <vector>

class QVBoxLayout;

namespace brindlehum {

struct Banner {
    QString text;
    QString button;  // empty: none
    std::function<void()> action;
    QString secondButton = {};
    std::function<void()> secondAction = {};
};

class BannerStack : public QWidget {
    Q_OBJECT
public:
    explicit BannerStack(QWidget* parent = nullptr);
    // Does nothing if the texts are the same.
    void setBanners(const std::vector<Banner>& banners);

private:
    QWidget* makeBanner(const Banner& banner);

    QVBoxLayout* column_;
    QStringList shown_;
};

}  // namespace brindlehum
