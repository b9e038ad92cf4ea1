// SPDX-License-Identifier: MIT
#include "tests/contracts/ForeignDrags.h"
#include "tests/platform/drags/ClientProcess.h"
#include "tests/support/Hand.h"

#include <QTest>

namespace {

constexpr QPoint kOnSource(60, 60);
constexpr QPoint kAway(200, 200);

// A program with a window at the top left, and a hand that drags out of it.
class DragOfAClient : public ForeignDragUnderWay {
public:
    explicit DragOfAClient(const QByteArray &list)
        : source(QStringLiteral("DragSource"),
                 {QStringLiteral("--x"), QStringLiteral("10"), QStringLiteral("--y"), QStringLiteral("10"),
                  QStringLiteral("--list"), QString::fromLatin1(list)})
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

} // namespace

std::unique_ptr<ForeignDragUnderWay> dragInAnotherProgram(Platform &, const QList<QUrl> &urls)
{
    QByteArrayList lines;
    for (const QUrl &url : urls)
        lines.append(url.toEncoded());
    auto drag = std::make_unique<DragOfAClient>(lines.join("\r\n"));
    if (!drag->begin())
        return nullptr;
    return drag;
}
