// SPDX-License-Identifier: MIT
#include "platform/linux/thumbnails/DesktopThumbnailer.h"

#include "platform/linux/thumbnails/LinuxThumbnailGenerator.h"
#include "tests/platform/thumbnails/DiskCache.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/SampleFiles.h"
#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"

#include <QApplication>
#include <QDBusContext>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QTest>

#include <atomic>

using namespace Qt::StringLiterals;

namespace {

const QString kService = u"org.freedesktop.thumbnails.Thumbnailer1"_s;
const QString kPath = u"/org/freedesktop/thumbnails/Thumbnailer1"_s;
const QString kPdf = u"application/pdf"_s;
const QString kNormal = u"normal"_s;

constexpr int kOpen = -1;         // not answered yet
constexpr int kPatience = 20'000; // milliseconds

// A thumbnailer service whose answers the test decides.
class FakeThumbnailer : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.thumbnails.Thumbnailer1")

public:
    struct Call {
        QStringList uris;
        QStringList types;
        QString flavor;
        uint handle;
        QDBusMessage message;
    };

    explicit FakeThumbnailer(const QDBusConnection &connection)
        : bus(connection)
    {
        bus.registerObject(kPath, this, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
    }
    ~FakeThumbnailer() override
    {
        disappear();
        bus.unregisterObject(kPath);
    }
    Q_DISABLE_COPY_MOVE(FakeThumbnailer)

    bool appear() { return bus.registerService(kService); }
    void disappear() { bus.unregisterService(kService); }
    void answer(const Call &call) { bus.send(call.message.createReply(call.handle)); }

    QDBusConnection bus;
    bool answersAtOnce = true;
    int questions = 0;
    QList<Call> calls;
    QList<uint> dequeued;

public slots:
    QStringList GetSupported(QStringList &types)
    {
        ++questions;
        types = {u"application/pdf"_s, u"application/pdf"_s, u"video/mp4"_s};
        return {u"file"_s, u"sftp"_s, u"sftp"_s};
    }

    uint Queue(const QStringList &uris, const QStringList &types, const QString &flavor, const QString &, uint)
    {
        calls.append({uris, types, flavor, uint(calls.size()) + 100, message()});
        setDelayedReply(!answersAtOnce);
        return calls.last().handle;
    }

    void Dequeue(uint handle) { dequeued.append(handle); }

signals:
    void Ready(uint handle, const QStringList &uris);
    void Error(uint handle, const QStringList &uris, int code, const QString &message);
    void Finished(uint handle);
};

} // namespace

class DesktopThumbnailerTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void a_file_that_the_service_made_a_picture_of_is_done();
    void a_file_that_the_service_failed_on_is_done_without_one();
    void a_queue_that_finished_without_a_word_is_done_without_a_picture();
    void types_are_asked_for_once();
    void a_type_known_by_another_name_is_queued_by_that_name();
    void types_of_other_than_local_files_do_not_count();
    void signals_of_other_requests_are_ignored();
    void a_signal_before_the_answer_is_known_by_its_file();
    void an_end_before_the_answer_is_remembered();
    void without_a_service_nothing_is_made();
    void without_a_bus_nothing_is_made();
    void a_service_that_comes_later_is_used();
    void a_service_that_goes_leaves_nothing_open();
    void a_service_that_stops_for_idleness_is_asked_again();
    void a_service_that_is_silent_is_given_up();
    void a_request_taken_after_it_was_given_up_is_dequeued();
    void progress_extends_the_patience();
    void what_is_open_is_done_when_the_thumbnailer_goes();
    void the_generator_answers_with_the_services_picture();

private:
    DesktopThumbnailer::Done outcome(int &made) const
    {
        return [&made](bool yes) { made = yes ? 1 : 0; };
    }

    void request(const QString &uri, int &made) { thumbnailer->request(uri, {kPdf}, kNormal, outcome(made)); }

    std::unique_ptr<PrivateBus> bus;
    std::unique_ptr<FakeThumbnailer> service;
    std::unique_ptr<DesktopThumbnailer> thumbnailer;
    const QString one = u"file:///one.pdf"_s;
    const QString two = u"file:///two.pdf"_s;
};

void DesktopThumbnailerTest::initTestCase()
{
    bus = std::make_unique<PrivateBus>();
    QVERIFY2(!bus->address.isEmpty(), "A session bus cannot be started.");
    // The generator takes this bus for the user's session bus.
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus->address.toUtf8());
}

void DesktopThumbnailerTest::init()
{
    service = std::make_unique<FakeThumbnailer>(bus->connect(u"service"_s));
    QVERIFY(service->appear());
    thumbnailer = std::make_unique<DesktopThumbnailer>(bus->connect(u"client"_s));
}

void DesktopThumbnailerTest::cleanup()
{
    thumbnailer.reset();
    service.reset();
    QDBusConnection::disconnectFromBus(u"client"_s);
    QDBusConnection::disconnectFromBus(u"service"_s);
}

void DesktopThumbnailerTest::a_file_that_the_service_made_a_picture_of_is_done()
{
    int made = kOpen;
    request(one, made);
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 1, kPatience);
    QCOMPARE(service->calls.first().uris, QStringList{one});
    QCOMPARE(service->calls.first().types, QStringList{kPdf});
    QCOMPARE(service->calls.first().flavor, kNormal);
    QCOMPARE(made, kOpen);
    emit service->Ready(100, {one});
    QTRY_COMPARE_WITH_TIMEOUT(made, 1, kPatience);
}

void DesktopThumbnailerTest::a_file_that_the_service_failed_on_is_done_without_one()
{
    int made = kOpen;
    request(one, made);
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 1, kPatience);
    emit service->Error(100, {one}, 1, u"no"_s);
    QTRY_COMPARE_WITH_TIMEOUT(made, 0, kPatience);
}

void DesktopThumbnailerTest::a_queue_that_finished_without_a_word_is_done_without_a_picture()
{
    int made = kOpen;
    request(one, made);
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 1, kPatience);
    emit service->Finished(100);
    QTRY_COMPARE_WITH_TIMEOUT(made, 0, kPatience);
}

void DesktopThumbnailerTest::types_are_asked_for_once()
{
    int first = kOpen;
    int second = kOpen;
    int third = kOpen;
    request(one, first);
    request(two, second);
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 2, kPatience);
    emit service->Ready(101, {two});
    emit service->Ready(100, {one});
    QTRY_COMPARE_WITH_TIMEOUT(first, 1, kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(second, 1, kPatience);
    request(one, third);
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 3, kPatience);
    QCOMPARE(service->questions, 1);
    thumbnailer.reset();
    QCOMPARE(third, 0);
}

void DesktopThumbnailerTest::a_type_known_by_another_name_is_queued_by_that_name()
{
    int made = kOpen;
    thumbnailer->request(one, {u"text/x-pdf"_s, kPdf}, kNormal, outcome(made));
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 1, kPatience);
    QCOMPARE(service->calls.first().types, QStringList{kPdf});
    thumbnailer.reset();
}

void DesktopThumbnailerTest::types_of_other_than_local_files_do_not_count()
{
    int made = kOpen;
    thumbnailer->request(u"file:///a.mp4"_s, {u"video/mp4"_s}, kNormal, outcome(made));
    QTRY_COMPARE_WITH_TIMEOUT(made, 0, kPatience);
    // Once the types are known, the answer comes at once.
    made = kOpen;
    thumbnailer->request(u"file:///a.txt"_s, {u"text/plain"_s}, kNormal, outcome(made));
    QCOMPARE(made, 0);
    QVERIFY(service->calls.isEmpty());
}

void DesktopThumbnailerTest::signals_of_other_requests_are_ignored()
{
    int first = kOpen;
    int second = kOpen;
    request(one, first);
    request(two, second);
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 2, kPatience);
    emit service->Ready(101, {two});
    QTRY_COMPARE_WITH_TIMEOUT(second, 1, kPatience);
    emit service->Ready(999, {one});
    emit service->Error(999, {one}, 0, QString());
    emit service->Finished(999);
    emit service->Ready(100, {u"file:///three.pdf"_s});
    // A signal that is sent after the others arrives after them.
    emit service->Ready(100, {one});
    QTRY_VERIFY_WITH_TIMEOUT(first != kOpen, kPatience);
    QCOMPARE(first, 1);
}

void DesktopThumbnailerTest::a_signal_before_the_answer_is_known_by_its_file()
{
    service->answersAtOnce = false;
    int made = kOpen;
    request(one, made);
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 1, kPatience);
    emit service->Ready(100, {one});
    emit service->Finished(100);
    QTRY_COMPARE_WITH_TIMEOUT(made, 1, kPatience);
    service->answer(service->calls.first());
}

void DesktopThumbnailerTest::an_end_before_the_answer_is_remembered()
{
    service->answersAtOnce = false;
    int made = kOpen;
    request(one, made);
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 1, kPatience);
    emit service->Finished(100);
    service->answer(service->calls.first());
    QTRY_COMPARE_WITH_TIMEOUT(made, 0, kPatience);
}

void DesktopThumbnailerTest::without_a_service_nothing_is_made()
{
    service->disappear();
    int made = kOpen;
    request(one, made);
    QTRY_COMPARE_WITH_TIMEOUT(made, 0, kPatience);
    // The missing service is not looked up again each time. The signal of its end may still be in transit.
    const auto answersAtOnce = [&] {
        made = kOpen;
        request(one, made);
        return made == 0;
    };
    QTRY_VERIFY_WITH_TIMEOUT(answersAtOnce(), kPatience);
    thumbnailer.reset();
}

void DesktopThumbnailerTest::without_a_bus_nothing_is_made()
{
    DesktopThumbnailer alone(QDBusConnection(u"no such connection"_s));
    int made = kOpen;
    alone.request(one, {kPdf}, kNormal, outcome(made));
    QCOMPARE(made, 0);
}

void DesktopThumbnailerTest::a_service_that_comes_later_is_used()
{
    service->disappear();
    int made = kOpen;
    request(one, made);
    QTRY_COMPARE_WITH_TIMEOUT(made, 0, kPatience);
    QVERIFY(service->appear());
    QTRY_VERIFY_WITH_TIMEOUT((request(one, made), !service->calls.isEmpty()), kPatience);
    thumbnailer.reset();
}

void DesktopThumbnailerTest::a_service_that_goes_leaves_nothing_open()
{
    int made = kOpen;
    request(one, made);
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 1, kPatience);
    service->disappear();
    QTRY_COMPARE_WITH_TIMEOUT(made, 0, kPatience);
}

void DesktopThumbnailerTest::a_service_that_stops_for_idleness_is_asked_again()
{
    int made = kOpen;
    request(one, made);
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 1, kPatience);
    service->disappear();
    QTRY_COMPARE_WITH_TIMEOUT(made, 0, kPatience);
    QVERIFY(service->appear());
    made = kOpen;
    request(one, made);
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 2, kPatience);
    emit service->Ready(101, {one});
    QTRY_COMPARE_WITH_TIMEOUT(made, 1, kPatience);
}

void DesktopThumbnailerTest::a_service_that_is_silent_is_given_up()
{
    using namespace std::chrono_literals;
    QCOMPARE(DesktopThumbnailer::kLongestSilence, std::chrono::milliseconds(10s));
    DesktopThumbnailer impatient(bus->connect(u"client"_s), 500ms);
    int first = kOpen;
    int second = kOpen;
    impatient.request(one, {kPdf}, kNormal, outcome(first));
    impatient.request(two, {kPdf}, kNormal, outcome(second));
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 2, kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(first, 0, kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(second, 0, kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(service->dequeued, (QList<uint>{100, 101}), kPatience);
}

void DesktopThumbnailerTest::a_request_taken_after_it_was_given_up_is_dequeued()
{
    using namespace std::chrono_literals;
    DesktopThumbnailer impatient(bus->connect(u"client"_s), 500ms);
    service->answersAtOnce = false;
    int made = kOpen;
    impatient.request(one, {kPdf}, kNormal, outcome(made));
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 1, kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(made, 0, kPatience);
    QVERIFY(service->dequeued.isEmpty());
    service->answer(service->calls.first());
    QTRY_COMPARE_WITH_TIMEOUT(service->dequeued, QList<uint>{100}, kPatience);
}

void DesktopThumbnailerTest::progress_extends_the_patience()
{
    using namespace std::chrono_literals;
    DesktopThumbnailer patient(bus->connect(u"client"_s), 2s);
    QElapsedTimer sinceProgress;
    qint64 silence = 0;
    int first = kOpen;
    int second = kOpen;
    patient.request(one, {kPdf}, kNormal, [&](bool yes) {
        first = yes ? 1 : 0;
        sinceProgress.start();
    });
    patient.request(two, {kPdf}, kNormal, [&](bool yes) {
        second = yes ? 1 : 0;
        silence = sinceProgress.elapsed();
    });
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 2, kPatience);
    QElapsedTimer sinceRequest;
    sinceRequest.start();
    QTRY_VERIFY_WITH_TIMEOUT(sinceRequest.hasExpired(500), kPatience);
    emit service->Ready(100, {one});
    QTRY_COMPARE_WITH_TIMEOUT(first, 1, kPatience);
    QTRY_COMPARE_WITH_TIMEOUT(second, 0, kPatience);
    QVERIFY2(silence >= 1900, QByteArray::number(silence).constData());
}

void DesktopThumbnailerTest::what_is_open_is_done_when_the_thumbnailer_goes()
{
    int made = kOpen;
    request(one, made);
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 1, kPatience);
    thumbnailer.reset();
    QCOMPARE(made, 0);
}

void DesktopThumbnailerTest::the_generator_answers_with_the_services_picture()
{
    const SampleFiles samples;
    const QByteArray folder = samples.path("thumbnails");
    const DiskCache cache(folder);
    const QByteArray path = samples.file("caf\xe9 [1].pdf", "%PDF-1.4\n");
    VirtualMainQueue queue;
    LinuxThumbnailGenerator generator(queue, std::make_shared<FileHelpers>(queue), folder);
    std::atomic<int> made = kOpen;
    QImage picture;
    const auto completion = [&](std::optional<Thumbnail> thumbnail) {
        picture = thumbnail ? thumbnail->image : QImage();
        made = thumbnail ? 1 : 0;
    };
    generator.generate(SampleFiles::url(path), 72, 2, completion);
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 1, kPatience);
    const QString uri = QString::fromLatin1(ThumbnailCache::uri(path));
    QCOMPARE(service->calls.first().uris, QStringList{uri});
    QCOMPARE(service->calls.first().types, QStringList{kPdf});
    QCOMPARE(service->calls.first().flavor, u"large"_s);

    QImage entry(256, 128, QImage::Format_RGB32);
    entry.fill(Qt::green);
    QVERIFY(cache.store(path, RegularFile::open(path)->state(), entry, *ThumbnailCache::sizeClassFor({256, 256})));
    emit service->Ready(100, {uri});
    QTRY_COMPARE_WITH_TIMEOUT(made.load(), 1, kPatience);
    QCOMPARE(picture.size(), QSize(144, 72));
    QCOMPARE(picture.pixelColor(9, 9), QColor(Qt::green));

    // No picture comes from a service that promises one but writes none, or from a service that is gone.
    const QByteArray other = samples.file("b.pdf", "%PDF-1.4\n");
    made = kOpen;
    generator.generate(SampleFiles::url(other), 72, 1, completion);
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 2, kPatience);
    emit service->Ready(101, {QString::fromLatin1(ThumbnailCache::uri(other))});
    QTRY_COMPARE_WITH_TIMEOUT(made.load(), 0, kPatience);
    made = kOpen;
    generator.generate(SampleFiles::url(other), 72, 1, completion);
    QTRY_COMPARE_WITH_TIMEOUT(service->calls.size(), 3, kPatience);
    service->disappear();
    QTRY_COMPARE_WITH_TIMEOUT(made.load(), 0, kPatience);
}

PARKLET_TEST(DesktopThumbnailerTest)
#include "DesktopThumbnailerTest.moc"
