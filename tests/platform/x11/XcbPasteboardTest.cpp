// SPDX-License-Identifier: MIT
#include "platform/linux/x11/XcbPasteboard.h"

#include "platform/FileURLs.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QClipboard>
#include <QHash>
#include <QMimeData>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class XcbPasteboardTest : public QObject {
    Q_OBJECT

private slots:
    void the_files_of_another_program_are_read();
    void a_list_in_pieces_is_read();
    void a_link_is_read_where_there_is_no_list();
    void words_are_no_files();
    void a_clipboard_of_nobodys_holds_no_files();
    void this_programs_own_clipboard_is_read();
    void an_owner_that_never_answers_is_given_up();
    void an_owner_that_stalls_in_pieces_is_given_up();
    void a_new_owner_is_asked_while_an_old_one_is_waited_for();
    void the_patience_is_five_seconds() { QVERIFY(SelectionReader::kPatience == 5s); }
    void without_a_server_there_are_no_files();
};

namespace {

constexpr int kPatience = 20'000; // milliseconds
constexpr auto kNever = 600s;
constexpr auto kSoon = 50ms;
const QByteArray kList = "file:///tmp/a%20b\r\nfile:///tmp/c\r\n";
const QList<QUrl> kFiles = {QUrl(u"file:///tmp/a%20b"_s), QUrl(u"file:///tmp/c"_s)};

using Contents = QHash<QByteArray, QByteArray>; // by type

// Another program that has something on the clipboard.
class Owner {
public:
    enum class Way { Whole, InPieces, FirstPieceOnly, Never };

    explicit Owner(const Contents &contents, Way answers = Way::Whole)
        : offered(contents)
        , way(answers)
        , xcb(XcbConnection::open())
        , window(xcb_generate_id(xcb->get()))
    {
        xcb_create_window(xcb->get(), XCB_COPY_FROM_PARENT, window, xcb->root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_set_selection_owner(xcb->get(), window, xcb->atom("CLIPBOARD"), XCB_CURRENT_TIME);
        // It owns it when this has come.
        xcb->reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(xcb->get(), xcb->atom("CLIPBOARD")));
        subscription = xcb->listen([this](const xcb_generic_event_t &event) { handle(event); });
    }

    ~Owner()
    {
        xcb_destroy_window(xcb->get(), window);
        // Nobody owns it when this has come.
        xcb->reply(xcb_get_input_focus_reply, xcb_get_input_focus(xcb->get()));
    }
    Owner(const Owner &) = delete;
    Owner &operator=(const Owner &) = delete;

    int asks = 0;

private:
    void handle(const xcb_generic_event_t &event)
    {
        const int kind = event.response_type & 0x7f;
        if (kind == XCB_SELECTION_REQUEST) {
            request = reinterpret_cast<const xcb_selection_request_event_t &>(event);
            ++asks;
            if (way != Way::Never)
                answer();
        } else if (kind == XCB_PROPERTY_NOTIFY) {
            const auto &change = reinterpret_cast<const xcb_property_notify_event_t &>(event);
            if (change.state == XCB_PROPERTY_DELETE && change.atom == request.property && !rest.isNull())
                putNext();
        }
    }

    void answer()
    {
        for (auto each = offered.constBegin(); each != offered.constEnd(); ++each) {
            if (xcb->atom(each.key()) != request.target)
                continue;
            if (way == Way::Whole) {
                put(each.value());
            } else {
                rest = each.value();
                constexpr quint32 events = XCB_EVENT_MASK_PROPERTY_CHANGE;
                xcb_change_window_attributes(xcb->get(), request.requestor, XCB_CW_EVENT_MASK, &events);
                constexpr quint32 size = 1;
                xcb_change_property(xcb->get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                                    xcb->atom("INCR"), 32, 1, &size);
            }
            notify(request.property);
            return;
        }
        notify(XCB_ATOM_NONE);
    }

    // The last piece is empty.
    void putNext()
    {
        constexpr qsizetype kPiece = 9;
        put(rest.left(kPiece));
        if (way == Way::FirstPieceOnly || rest.isEmpty())
            rest = QByteArray();
        else
            rest = rest.size() > kPiece ? rest.mid(kPiece) : QByteArray("");
    }

    void put(const QByteArray &data)
    {
        xcb_change_property(xcb->get(), XCB_PROP_MODE_REPLACE, request.requestor, request.property, request.target, 8,
                            quint32(data.size()), data.constData());
        xcb->flush();
    }

    void notify(xcb_atom_t property)
    {
        xcb_selection_notify_event_t event{};
        event.response_type = XCB_SELECTION_NOTIFY;
        event.time = request.time;
        event.requestor = request.requestor;
        event.selection = request.selection;
        event.target = request.target;
        event.property = property;
        xcb_send_event(xcb->get(), 0, request.requestor, 0, reinterpret_cast<const char *>(&event));
        xcb->flush();
    }

    const Contents offered;
    const Way way;
    std::shared_ptr<XcbConnection> xcb;
    xcb_window_t window;
    xcb_selection_request_event_t request{};
    QByteArray rest; // null when no piece is to follow
    XcbConnection::Subscription subscription;
};

struct Fixture {
    explicit Fixture(std::chrono::milliseconds patience = kNever)
        : pasteboard(XcbConnection::open(), patience)
    {
    }

    void ask()
    {
        pasteboard.readFileURLs([this](const QList<QUrl> &files) { answers.append(files); });
    }

    bool isAnswered(int count = 1)
    {
        return QTest::qWaitFor([this, count] { return answers.size() >= count; }, kPatience);
    }

    XcbPasteboard pasteboard;
    QList<QList<QUrl>> answers;
};

using Answers = QList<QList<QUrl>>;

} // namespace

void XcbPasteboardTest::the_files_of_another_program_are_read()
{
    Fixture f;
    const Owner owner(Contents{{"text/uri-list", kList}, {"text/x-moz-url", "nonsense"}});
    f.ask();
    // Nothing has been waited for.
    QVERIFY(f.answers.isEmpty());
    QVERIFY(f.isAnswered());
    QCOMPARE(f.answers, Answers{kFiles});
}

void XcbPasteboardTest::a_list_in_pieces_is_read()
{
    Fixture f;
    const Owner owner(Contents{{"text/uri-list", kList}}, Owner::Way::InPieces);
    f.ask();
    QVERIFY(f.isAnswered());
    QCOMPARE(f.answers, Answers{kFiles});
}

void XcbPasteboardTest::a_link_is_read_where_there_is_no_list()
{
    Fixture f;
    const QString link = u"file:///tmp/c\nThe file"_s;
    const Owner owner(
        Contents{{"text/x-moz-url", QByteArray(reinterpret_cast<const char *>(link.utf16()), link.size() * 2)}});
    f.ask();
    QVERIFY(f.isAnswered());
    QCOMPARE(f.answers, Answers{{fileURL("/tmp/c")}});
}

void XcbPasteboardTest::words_are_no_files()
{
    Fixture f;
    const Owner owner(Contents{{"UTF8_STRING", "/tmp/a"}, {"text/plain", "file:///tmp/a"}});
    f.ask();
    QVERIFY(f.isAnswered());
    QCOMPARE(f.answers, Answers{{}});
}

void XcbPasteboardTest::a_clipboard_of_nobodys_holds_no_files()
{
    Fixture f;
    f.ask();
    QVERIFY(f.isAnswered());
    QCOMPARE(f.answers, Answers{{}});
}

void XcbPasteboardTest::this_programs_own_clipboard_is_read()
{
    Fixture f;
    auto *data = new QMimeData;
    data->setUrls(kFiles);
    QGuiApplication::clipboard()->setMimeData(data); // which takes it over
    f.ask();
    QVERIFY(f.isAnswered());
    QCOMPARE(f.answers, Answers{kFiles});
    QGuiApplication::clipboard()->clear();
}

void XcbPasteboardTest::an_owner_that_never_answers_is_given_up()
{
    Fixture f(kSoon);
    const Owner owner(Contents{{"text/uri-list", kList}}, Owner::Way::Never);
    f.ask();
    QVERIFY(f.answers.isEmpty());
    QVERIFY(f.isAnswered());
    QCOMPARE(f.answers, Answers{{}});
    QTRY_COMPARE_WITH_TIMEOUT(owner.asks, 1, kPatience);
}

void XcbPasteboardTest::an_owner_that_stalls_in_pieces_is_given_up()
{
    Fixture f(500ms);
    const Owner owner(Contents{{"text/uri-list", kList}}, Owner::Way::FirstPieceOnly);
    f.ask();
    QVERIFY(f.isAnswered());
    QCOMPARE(f.answers, Answers{{}});
}

void XcbPasteboardTest::a_new_owner_is_asked_while_an_old_one_is_waited_for()
{
    Fixture f;
    const Owner mute(Contents{{"text/uri-list", "file:///tmp/old"}}, Owner::Way::Never);
    f.ask();
    QTRY_COMPARE_WITH_TIMEOUT(mute.asks, 1, kPatience);
    const Owner owner(Contents{{"text/uri-list", kList}});
    f.ask();
    QVERIFY(f.isAnswered(2));
    QCOMPARE(f.answers, (Answers{kFiles, kFiles}));
}

void XcbPasteboardTest::without_a_server_there_are_no_files()
{
    XcbPasteboard pasteboard(nullptr);
    int answers = 0;
    pasteboard.readFileURLs([&answers](const QList<QUrl> &files) { answers += files.isEmpty() ? 1 : 0; });
    QCOMPARE(answers, 1);
}

PARKLET_TEST(XcbPasteboardTest)
#include "XcbPasteboardTest.moc"
