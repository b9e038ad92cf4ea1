// SPDX-License-Identifier: MIT
// A window that is dragged from, or one that takes drops; each prints a line for every drag that ends with it.
//
//   wayland_peer source FILE TYPE      carries the bytes of a file
//   wayland_peer target MILLISECONDS   asks for what was dropped when that time has passed
#include <QApplication>
#include <QDrag>
#include <QDropEvent>
#include <QEventLoop>
#include <QFile>
#include <QMimeData>
#include <QMouseEvent>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <cstdio>
#include <memory>
#include <utility>

namespace {

constexpr char kURIList[] = "text/uri-list";

const char *nameOf(Qt::DropAction action)
{
    switch (action) {
    case Qt::CopyAction:
        return "copy";
    case Qt::MoveAction:
        return "move";
    case Qt::LinkAction:
        return "link";
    default:
        return "nothing";
    }
}

void print(const char *what, Qt::DropAction action, const QByteArray &more = {})
{
    std::printf("%s %s %s\n", what, nameOf(action), more.constData());
    std::fflush(stdout);
}

class Source : public QWidget {
public:
    Source(QByteArray what, QString type)
        : carried(std::move(what))
        , typeOf(std::move(type))
    {
        setWindowTitle(QStringLiteral("Qt source"));
    }

protected:
    void mousePressEvent(QMouseEvent *event) override { pressed = event->position().toPoint(); }

    void mouseMoveEvent(QMouseEvent *event) override
    {
        const bool isFar =
            (event->position().toPoint() - pressed).manhattanLength() >= QApplication::startDragDistance();
        if (!isFar || isDragging)
            return;
        isDragging = true;
        auto *carries = new QMimeData;
        carries->setData(typeOf, carried);
        auto *drag = new QDrag(this);
        drag->setMimeData(carries);
        print("ended", drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::CopyAction));
        isDragging = false;
    }

private:
    QByteArray carried;
    QString typeOf;
    QPoint pressed;
    bool isDragging = false;
};

class Target : public QWidget {
public:
    explicit Target(std::chrono::milliseconds time)
        : delay(time)
    {
        setWindowTitle(QStringLiteral("Qt target"));
        setAcceptDrops(true);
    }

protected:
    void dragEnterEvent(QDragEnterEvent *event) override { event->acceptProposedAction(); }
    void dragMoveEvent(QDragMoveEvent *event) override { event->acceptProposedAction(); }

    void dropEvent(QDropEvent *event) override
    {
        print("released", event->dropAction());
        if (delay.count() > 0) {
            QEventLoop loop;
            QTimer::singleShot(delay, &loop, &QEventLoop::quit);
            loop.exec();
        }
        const QByteArray list = event->mimeData()->data(QLatin1String(kURIList));
        event->acceptProposedAction();
        print("dropped", event->dropAction(), list.simplified());
    }

private:
    std::chrono::milliseconds delay;
};

} // namespace

int main(int argc, char **argv)
{
    const QApplication app(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 3)
        return 2;

    std::unique_ptr<QWidget> window;
    if (arguments.at(1) == QLatin1String("source")) {
        QFile file(arguments.at(2));
        if (!file.open(QIODevice::ReadOnly))
            return 1;
        window = std::make_unique<Source>(file.readAll(), arguments.value(3));
    } else {
        window = std::make_unique<Target>(std::chrono::milliseconds(arguments.at(2).toInt()));
    }
    window->resize(280, 160);
    window->show();
    return QApplication::exec();
}
