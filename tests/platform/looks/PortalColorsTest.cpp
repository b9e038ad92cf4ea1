// SPDX-License-Identifier: MIT
#include "platform/linux/looks/PortalColors.h"

#include "tests/support/PrivateBus.h"
#include "tests/support/TestProgram.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString kService = u"org.freedesktop.portal.Desktop"_s;
const QString kPath = u"/org/freedesktop/portal/desktop"_s;
const QString kAppearance = u"org.freedesktop.appearance"_s;
const QString kScheme = u"color-scheme"_s;
const QString kAccent = u"accent-color"_s;

} // namespace

// Red, green and blue, as a portal sends them.
struct Accent {
    double red = 0;
    double green = 0;
    double blue = 0;
};
Q_DECLARE_METATYPE(Accent)

QDBusArgument &operator<<(QDBusArgument &argument, const Accent &accent)
{
    argument.beginStructure();
    argument << accent.red << accent.green << accent.blue;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Accent &accent)
{
    argument.beginStructure();
    argument >> accent.red >> accent.green >> accent.blue;
    argument.endStructure();
    return argument;
}

using Groups = QMap<QString, QVariantMap>;
Q_DECLARE_METATYPE(Groups)

namespace {

QVariant accent(double red, double green, double blue)
{
    return QVariant::fromValue(Accent{red, green, blue});
}

class FakePortal : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit FakePortal(const QDBusConnection &connection)
        : bus(connection)
    {
        bus.registerObject(kPath, this, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
    }

    bool appear() { return bus.registerService(kService); }
    void change(const QString &group, const QString &key, const QVariant &value)
    {
        settings[group][key] = value;
        emit SettingChanged(group, key, QDBusVariant(value));
    }

    QDBusConnection bus;
    Groups settings;
    QStringList asked;
    bool isBroken = false;

public slots:
    Groups ReadAll(const QStringList &groups)
    {
        asked += groups;
        if (isBroken)
            sendErrorReply(QDBusError::Failed);
        return settings;
    }

signals:
    void SettingChanged(const QString &group, const QString &key, const QDBusVariant &value);
};

QColor shown(QPalette::ColorRole role)
{
    return QApplication::palette().color(role);
}

} // namespace

class PortalColorsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void the_accent_colour_is_the_palettes_highlight();
    void what_is_highlighted_can_be_read_data();
    void what_is_highlighted_can_be_read();
    void an_accent_that_is_no_colour_is_none_data();
    void an_accent_that_is_no_colour_is_none();
    void a_dark_desktop_makes_the_palette_dark();
    void only_a_wish_for_dark_makes_it_so_data();
    void only_a_wish_for_dark_makes_it_so();
    void a_palette_that_is_dark_already_stays_as_it_is();
    void a_change_is_followed_and_undone();
    void settings_of_others_do_not_count();
    void without_a_portal_nothing_changes();
    void a_portal_that_fails_changes_nothing();
    void a_theme_that_speaks_for_the_desktop_is_left_alone_data();
    void a_theme_that_speaks_for_the_desktop_is_left_alone();

private:
    QDBusConnection client() { return bus.connect(u"client"_s); }

    PrivateBus bus;
    std::unique_ptr<FakePortal> portal;
    QPalette standard;
};

void PortalColorsTest::initTestCase()
{
    QVERIFY(!bus.address.isEmpty());
    qDBusRegisterMetaType<Accent>();
    qDBusRegisterMetaType<Groups>();
    qunsetenv("QT_QPA_PLATFORMTHEME");
    qunsetenv("XDG_CURRENT_DESKTOP");
    standard = QApplication::palette();
}

void PortalColorsTest::init()
{
    portal = std::make_unique<FakePortal>(bus.connect(u"portal"_s));
    QVERIFY(portal->appear());
}

void PortalColorsTest::cleanup()
{
    portal.reset();
    QDBusConnection::disconnectFromBus(u"portal"_s);
    QDBusConnection::disconnectFromBus(u"client"_s);
    QApplication::setPalette(QPalette());
}

void PortalColorsTest::the_accent_colour_is_the_palettes_highlight()
{
    portal->settings[kAppearance] = {{kAccent, accent(1.0, 0.5, 0.0)}};
    PortalColors colors(client());
    QTRY_COMPARE(shown(QPalette::Highlight), QColor::fromRgbF(1.0F, 0.5F, 0.0F));
    QCOMPARE(portal->asked, QStringList{kAppearance});
    // No other colour changes, and none of disabled views.
    QCOMPARE(shown(QPalette::Window), standard.color(QPalette::Window));
    QCOMPARE(QApplication::palette().color(QPalette::Disabled, QPalette::Highlight),
             standard.color(QPalette::Disabled, QPalette::Highlight));
}

void PortalColorsTest::what_is_highlighted_can_be_read_data()
{
    QTest::addColumn<QColor>("highlight");
    QTest::addColumn<QColor>("text");
    QTest::newRow("blue") << QColor(53, 132, 228) << QColor(Qt::white);
    QTest::newRow("orange") << QColor(230, 97, 25) << QColor(Qt::white);
    QTest::newRow("yellow") << QColor(246, 211, 45) << QColor(Qt::black);
    QTest::newRow("the brightest grey under white") << QColor(148, 148, 148) << QColor(Qt::white);
    QTest::newRow("the next one") << QColor(149, 149, 149) << QColor(Qt::black);
    QTest::newRow("black") << QColor(Qt::black) << QColor(Qt::white);
    QTest::newRow("white") << QColor(Qt::white) << QColor(Qt::black);
}

void PortalColorsTest::what_is_highlighted_can_be_read()
{
    QFETCH(const QColor, highlight);
    DesktopColors colors;
    colors.accent = highlight;
    QTEST(desktopPalette(standard, colors).color(QPalette::Active, QPalette::HighlightedText), "text");
}

void PortalColorsTest::an_accent_that_is_no_colour_is_none_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("beyond one") << accent(0.2, 1.5, 0.2);
    QTest::newRow("below zero") << accent(-1.0, -1.0, -1.0);
    QTest::newRow("no number") << accent(0.2, 0.2, std::nan(""));
    QTest::newRow("a text") << QVariant(u"#ff8000"_s);
    QTest::newRow("an array") << QVariant(QStringList{u"1"_s, u"0"_s, u"0"_s});
}

void PortalColorsTest::an_accent_that_is_no_colour_is_none()
{
    QFETCH(const QVariant, value);
    // The dark setting shows that the answer has arrived.
    portal->settings[kAppearance] = {{kAccent, value}, {kScheme, 1U}};
    PortalColors colors(client());
    QTRY_VERIFY(shown(QPalette::Window).lightness() < 100);
    QCOMPARE(shown(QPalette::Highlight), standard.color(QPalette::Highlight));
}

void PortalColorsTest::a_dark_desktop_makes_the_palette_dark()
{
    portal->settings[kAppearance] = {{kScheme, 1U}};
    PortalColors colors(client());
    QTRY_VERIFY(shown(QPalette::Window).lightness() < 100);
    for (const auto role :
         {QPalette::Window, QPalette::Base, QPalette::AlternateBase, QPalette::Button, QPalette::ToolTipBase})
        QVERIFY2(shown(role).lightness() < 100, QByteArray::number(role).constData());
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText,
                            QPalette::PlaceholderText, QPalette::Link, QPalette::LinkVisited})
        QVERIFY2(shown(role).lightness() > 130, QByteArray::number(role).constData());
    const QPalette palette = QApplication::palette();
    const int disabled = palette.color(QPalette::Disabled, QPalette::ButtonText).lightness();
    QVERIFY(disabled > shown(QPalette::Button).lightness() + 60);
    QVERIFY(disabled < shown(QPalette::ButtonText).lightness() - 60);
}

void PortalColorsTest::only_a_wish_for_dark_makes_it_so_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("no preference") << QVariant(0U);
    QTest::newRow("light") << QVariant(2U);
    QTest::newRow("unknown") << QVariant(3U);
    QTest::newRow("no number") << QVariant(u"dark"_s);
}

void PortalColorsTest::only_a_wish_for_dark_makes_it_so()
{
    QFETCH(const QVariant, value);
    // The accent shows that the answer has arrived.
    portal->settings[kAppearance] = {{kAccent, accent(1.0, 0.0, 0.0)}, {kScheme, value}};
    PortalColors colors(client());
    QTRY_COMPARE(shown(QPalette::Highlight), QColor(Qt::red));
    QCOMPARE(shown(QPalette::Window), standard.color(QPalette::Window));
}

void PortalColorsTest::a_palette_that_is_dark_already_stays_as_it_is()
{
    DesktopColors colors;
    colors.scheme = DesktopColors::Scheme::Dark;
    const QPalette dark(Qt::darkGreen, Qt::black);
    QCOMPARE(desktopPalette(dark, colors).resolve(dark), dark);
    QVERIFY(desktopPalette(standard, colors).resolve(standard) != standard);
}

void PortalColorsTest::a_change_is_followed_and_undone()
{
    PortalColors colors(client());
    QTRY_COMPARE(portal->asked.size(), 1);
    portal->change(kAppearance, kScheme, 1U);
    QTRY_VERIFY(shown(QPalette::Window).lightness() < 100);
    portal->change(kAppearance, kAccent, accent(0.0, 1.0, 0.0));
    QTRY_COMPARE(shown(QPalette::Highlight), QColor(Qt::green));
    QVERIFY(shown(QPalette::Window).lightness() < 100);
    portal->change(kAppearance, kScheme, 0U);
    QTRY_COMPARE(shown(QPalette::Window), standard.color(QPalette::Window));
    QCOMPARE(shown(QPalette::Highlight), QColor(Qt::green));
    portal->change(kAppearance, kAccent, accent(-1.0, -1.0, -1.0));
    QTRY_COMPARE(shown(QPalette::Highlight), standard.color(QPalette::Highlight));
}

void PortalColorsTest::settings_of_others_do_not_count()
{
    portal->settings[u"org.gnome.desktop.interface"_s] = {{kScheme, 1U}};
    PortalColors colors(client());
    QTRY_COMPARE(portal->asked.size(), 1);
    portal->change(u"org.gnome.desktop.interface"_s, kScheme, 1U);
    portal->change(kAppearance, u"contrast"_s, 1U);
    portal->change(kAppearance, kAccent, accent(1.0, 0.0, 0.0));
    QTRY_COMPARE(shown(QPalette::Highlight), QColor(Qt::red));
    QCOMPARE(shown(QPalette::Window), standard.color(QPalette::Window));
}

void PortalColorsTest::without_a_portal_nothing_changes()
{
    portal->bus.unregisterService(kService);
    PortalColors colors(client());
    // The bus answers in order, so after this it has also answered the calls to a portal.
    QVERIFY(!client().interface()->isServiceRegistered(kService).value());
    portal->settings[kAppearance] = {{kScheme, 1U}};
    // A portal that starts later reports its changes.
    QVERIFY(portal->appear());
    portal->change(kAppearance, kAccent, accent(1.0, 0.0, 0.0));
    QTRY_COMPARE(shown(QPalette::Highlight), QColor(Qt::red));
    QCOMPARE(shown(QPalette::Window), standard.color(QPalette::Window));
}

void PortalColorsTest::a_portal_that_fails_changes_nothing()
{
    portal->isBroken = true;
    portal->settings[kAppearance] = {{kScheme, 1U}};
    PortalColors colors(client());
    QTRY_COMPARE(portal->asked.size(), 1);
    portal->change(kAppearance, kAccent, accent(1.0, 0.0, 0.0));
    QTRY_COMPARE(shown(QPalette::Highlight), QColor(Qt::red));
    QCOMPARE(shown(QPalette::Window), standard.color(QPalette::Window));
}

void PortalColorsTest::a_theme_that_speaks_for_the_desktop_is_left_alone_data()
{
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("isLeft");
    QTest::newRow("chosen by the user") << QByteArray("QT_QPA_PLATFORMTHEME") << QByteArray("qt6ct") << true;
    QTest::newRow("KDE") << QByteArray("XDG_CURRENT_DESKTOP") << QByteArray("KDE") << true;
    QTest::newRow("KDE, among others") << QByteArray("XDG_CURRENT_DESKTOP") << QByteArray("neon:KDE") << true;
    QTest::newRow("GNOME") << QByteArray("XDG_CURRENT_DESKTOP") << QByteArray("ubuntu:GNOME") << false;
}

void PortalColorsTest::a_theme_that_speaks_for_the_desktop_is_left_alone()
{
    QFETCH(const QByteArray, variable);
    QFETCH(const QByteArray, value);
    QFETCH(const bool, isLeft);
    portal->settings[kAppearance] = {{kAccent, accent(1.0, 0.0, 0.0)}};
    qputenv(variable.constData(), value);
    PortalColors followed(client());
    qunsetenv(variable.constData());
    QCOMPARE(PortalColors::themeKnowsColors(), false);
    if (!isLeft) {
        QTRY_COMPARE(shown(QPalette::Highlight), QColor(Qt::red));
        return;
    }
    // This object would have received every change before the other one.
    const PortalColors other(client());
    QTRY_COMPARE(shown(QPalette::Highlight), QColor(Qt::red));
    QCOMPARE(portal->asked.size(), 1);
}

PARKLET_TEST(PortalColorsTest)
#include "PortalColorsTest.moc"
