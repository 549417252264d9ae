// A window whose content is dragged as files: drag_source FILE...

#include <QDrag>
#include <QGuiApplication>
#include <QMimeData>
#include <QMouseEvent>
#include <QRasterWindow>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

class DragSource final : public QRasterWindow {
public:
    explicit DragSource(QList<QUrl> files) : m_files(std::move(files)) {
        setTitle(u"drag source"_s);
        setFlags(Qt::BypassWindowManagerHint);
        setGeometry(0, 0, 60, 60);
    }

private:
    void mousePressEvent(QMouseEvent*) override {
        auto* content = new QMimeData;
        content->setUrls(m_files);
        auto* drag = new QDrag(this);
        drag->setMimeData(content);
        drag->exec(Qt::CopyAction);
    }
    void paintEvent(QPaintEvent*) override {}

    QList<QUrl> m_files;
};

} // namespace

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    QList<QUrl> files;
    for (const QString& path : QGuiApplication::arguments().sliced(1))
        files.append(QUrl::fromLocalFile(path));
    DragSource source(files);
    source.show();
    return QGuiApplication::exec();
}
