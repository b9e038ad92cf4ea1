// SPDX-License-Identifier: MIT
#include "tests/contracts/ForeignDrags.h"
#include "tests/platform/drags/ClientProcess.h"
#include "tests/platform/drags/DropSource.h"
#include "tests/support/Hand.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr QPoint kOnSource(60, 60);
constexpr QPoint kAway(200, 200);

// A program with a window at the top left, and test input that drags out of it.
class DragOfAClient : public ForeignDragUnderWay {
public:
    explicit DragOfAClient(const QByteArray &list)
        : source(u"DragSource"_s, {u"--x"_s, u"10"_s, u"--y"_s, u"10"_s, u"--list"_s, QString::fromLatin1(list)})
    {
    }
    Q_DISABLE_COPY_MOVE(DragOfAClient)
    ~DragOfAClient() override
    {
        hand.release();
        (void)QTest::qWaitFor([this] { return hand.isIdle(); });
    }

    bool begin()
    {
        if (!QTest::qWaitFor([this] { return source.said("ready"); }))
            return false;
        hand.moveTo(kOnSource).press().moveTo(kAway);
        return true;
    }

private:
    ClientProcess source;
    Hand hand;
};

class DropOfAClient : public ForeignDragUnderWay {
public:
    bool drop(const QWidget &window, const QByteArray &list)
    {
        source.drag(window);
        if (!QTest::qWaitFor([this] { return source.isAsked(); }, DropSource::kPatience))
            return false;
        source.answer(list);
        return true;
    }

private:
    DropSource source;
};

QByteArray listOf(const QList<QUrl> &urls)
{
    QByteArrayList lines;
    for (const QUrl &url : urls)
        lines.append(url.toEncoded());
    return lines.join("\r\n");
}

} // namespace

std::unique_ptr<ForeignDragUnderWay> dragInAnotherProgram(Platform &, const QList<QUrl> &urls)
{
    auto drag = std::make_unique<DragOfAClient>(listOf(urls));
    if (!drag->begin())
        return nullptr;
    return drag;
}

std::unique_ptr<ForeignDragUnderWay> dropFromAnotherProgram(QWidget &window, const QList<QUrl> &urls)
{
    auto drag = std::make_unique<DropOfAClient>();
    if (!drag->drop(window, listOf(urls)))
        return nullptr;
    return drag;
}
