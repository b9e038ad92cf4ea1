// SPDX-License-Identifier: MIT
#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"

#include <QTest>

class AppSettingsTest : public QObject {
    Q_OBJECT

private slots:
    void every_key_has_its_name();
    void every_notification_has_its_name();
    void a_fresh_store_reads_as_the_defaults();
    void a_value_of_the_wrong_type_reads_as_the_default();
    void a_number_reads_as_its_truth_value();
    void a_number_of_any_type_is_a_number();
    void the_dock_icon_and_login_item_read_as_false_unless_they_are_true();
    void a_written_property_is_stored_under_its_own_key();
    void keys_without_a_property_read_as_the_stores_zero();
    void a_tint_colour_survives_the_store();
    void data_that_is_no_colour_reads_as_the_accent_colour();
    void a_colour_that_cannot_be_archived_removes_the_stored_one();
    void excluded_applications_that_are_no_string_array_count_as_none();
    void writing_a_setting_posts_nothing_and_notifications_reach_their_name_only();
};

namespace {

struct Fixture {
    VirtualPlatform virtualPlatform;
    AppSettings settings{virtualPlatform.userDefaults, virtualPlatform.colorArchive, virtualPlatform.appearance};
    QMap<QString, QVariant> &values = virtualPlatform.userDefaults.values;
};

} // namespace

void AppSettingsTest::every_key_has_its_name()
{
    using namespace SettingsKey;
    const std::pair<QString, const char *> names[] = {
        {autoShowDropWindow, "autoShowDropWindow"},
        {autoShowTrigger, "autoShowTrigger"},
        {excludeMode, "excludeMode"},
        {excludedBundleIDs, "excludedBundleIDs"},
        {doubleClickAction, "doubleClickAction"},
        {removeItemsWhenDraggedOut, "removeItemsWhenDraggedOut"},
        {autoAddScreenshots, "autoAddScreenshots"},
        {dragMode, "dragMode"},
        {showMenuBarIcon, "showMenuBarIcon"},
        {showDockIcon, "showDockIcon"},
        {launchAtLogin, "launchAtLogin"},
        {tintColorData, "tintColorData"},
        {tintIntensity, "tintIntensity"},
        {shelfItemSize, "shelfItemSize"},
        {windowEdge, "windowEdge"},
        {windowAlignment, "windowAlignment"},
        {fileNameDisplay, "fileNameDisplay"},
        {hideFileExtensions, "hideFileExtensions"},
        {disableAnimations, "disableAnimations"},
        {autoHideTimeout, "autoHideTimeout"},
        {skipClearAllConfirmation, "skipClearAllConfirmation"},
        {hasShownUpdatePrompt, "hasShownUpdatePrompt"},
        {autoCheckUpdates, "autoCheckUpdates"},
    };
    QCOMPARE(std::size(names), size_t(23));
    for (const auto &[key, name] : names)
        QCOMPARE(key, QString::fromLatin1(name));
}

void AppSettingsTest::every_notification_has_its_name()
{
    QCOMPARE(Notifications::openPreferences, QStringLiteral("com.orvane.Parklet.openPreferences"));
    QCOMPARE(Notifications::shelfItemsChanged, QStringLiteral("com.orvane.Parklet.shelfItemsChanged"));
    QCOMPARE(Notifications::settingsChanged, QStringLiteral("com.orvane.Parklet.settingsChanged"));
    QCOMPARE(Notifications::appearancePaneActive, QStringLiteral("com.orvane.Parklet.appearancePaneActive"));
}

void AppSettingsTest::a_fresh_store_reads_as_the_defaults()
{
    Fixture f;
    QCOMPARE(f.settings.autoShowDropWindow(), true);
    QCOMPARE(f.settings.autoAddScreenshots(), true);
    QCOMPARE(f.settings.removeItemsWhenDraggedOut(), true);
    QCOMPARE(f.settings.doubleClickAction(), 1);
    QCOMPARE(f.settings.showMenuBarIcon(), true);
    QCOMPARE(f.settings.showDockIcon(), false);
    QCOMPARE(f.settings.launchAtLogin(), false);
    QCOMPARE(f.settings.tintColor(), f.virtualPlatform.appearance.accent);
    QCOMPARE(f.settings.tintIntensity(), 0.4);
    QCOMPARE(f.settings.shelfItemSize(), 72.0);
    QCOMPARE(f.settings.windowEdge(), 1);
    QCOMPARE(f.settings.windowAlignment(), 1);
    QCOMPARE(f.settings.autoHideTimeout(), 0.0);
    QVERIFY(f.values.isEmpty());
}

void AppSettingsTest::a_value_of_the_wrong_type_reads_as_the_default()
{
    Fixture f;
    const QVariant wrong[] = {QStringLiteral("100"), QVariantList{1}, QByteArray("1")};
    for (const QVariant &value : wrong) {
        for (const QString &key :
             {SettingsKey::autoShowDropWindow, SettingsKey::autoAddScreenshots, SettingsKey::removeItemsWhenDraggedOut,
              SettingsKey::doubleClickAction, SettingsKey::showMenuBarIcon, SettingsKey::tintIntensity,
              SettingsKey::shelfItemSize, SettingsKey::windowEdge, SettingsKey::windowAlignment,
              SettingsKey::autoHideTimeout, SettingsKey::tintColorData})
            f.values.insert(key, value);
        QCOMPARE(f.settings.autoShowDropWindow(), true);
        QCOMPARE(f.settings.autoAddScreenshots(), true);
        QCOMPARE(f.settings.removeItemsWhenDraggedOut(), true);
        QCOMPARE(f.settings.doubleClickAction(), 1);
        QCOMPARE(f.settings.showMenuBarIcon(), true);
        QCOMPARE(f.settings.tintIntensity(), 0.4);
        QCOMPARE(f.settings.shelfItemSize(), 72.0);
        QCOMPARE(f.settings.windowEdge(), 1);
        QCOMPARE(f.settings.windowAlignment(), 1);
        QCOMPARE(f.settings.autoHideTimeout(), 0.0);
        QCOMPARE(f.settings.tintColor(), f.virtualPlatform.appearance.accent);
    }
}

void AppSettingsTest::a_number_reads_as_its_truth_value()
{
    Fixture f;
    f.values.insert(SettingsKey::showMenuBarIcon, 0.0);
    QCOMPARE(f.settings.showMenuBarIcon(), false);
    f.values.insert(SettingsKey::showMenuBarIcon, 2.0);
    QCOMPARE(f.settings.showMenuBarIcon(), true);
    f.values.insert(SettingsKey::windowEdge, true);
    QCOMPARE(f.settings.windowEdge(), 1);
    // A number no int can hold is no number of an edge.
    f.values.insert(SettingsKey::windowEdge, 1e300);
    QCOMPARE(f.settings.windowEdge(), 1);
}

void AppSettingsTest::a_number_of_any_type_is_a_number()
{
    Fixture f;
    const QVariant numbers[] = {50, 50U, qint64(50), quint64(50), 50.0F, 50.0};
    for (const QVariant &number : numbers) {
        f.values.insert(SettingsKey::shelfItemSize, number);
        QCOMPARE(f.settings.shelfItemSize(), 50.0);
        // Through the property and directly, the store means the same by a number.
        QCOMPARE(f.settings.defaults.number(SettingsKey::shelfItemSize), 50.0);
    }
}

void AppSettingsTest::the_dock_icon_and_login_item_read_as_false_unless_they_are_true()
{
    Fixture f;
    f.values.insert(SettingsKey::showDockIcon, QStringLiteral("yes"));
    f.values.insert(SettingsKey::launchAtLogin, QVariantList{true});
    QCOMPARE(f.settings.showDockIcon(), false);
    QCOMPARE(f.settings.launchAtLogin(), false);
    f.values.insert(SettingsKey::showDockIcon, true);
    f.values.insert(SettingsKey::launchAtLogin, 1.0);
    QCOMPARE(f.settings.showDockIcon(), true);
    QCOMPARE(f.settings.launchAtLogin(), true);
}

void AppSettingsTest::a_written_property_is_stored_under_its_own_key()
{
    Fixture f;
    f.settings.setAutoShowDropWindow(false);
    f.settings.setAutoAddScreenshots(false);
    f.settings.setRemoveItemsWhenDraggedOut(false);
    f.settings.setDoubleClickAction(0);
    f.settings.setShowMenuBarIcon(false);
    f.settings.setShowDockIcon(true);
    f.settings.setLaunchAtLogin(true);
    f.settings.setTintIntensity(0.7);
    f.settings.setShelfItemSize(100.0);
    f.settings.setWindowEdge(3);
    f.settings.setWindowAlignment(2);
    f.settings.setAutoHideTimeout(3.0);

    const QMap<QString, QVariant> expected = {{QStringLiteral("autoShowDropWindow"), false},
                                              {QStringLiteral("autoAddScreenshots"), false},
                                              {QStringLiteral("removeItemsWhenDraggedOut"), false},
                                              {QStringLiteral("doubleClickAction"), 0},
                                              {QStringLiteral("showMenuBarIcon"), false},
                                              {QStringLiteral("showDockIcon"), true},
                                              {QStringLiteral("launchAtLogin"), true},
                                              {QStringLiteral("tintIntensity"), 0.7},
                                              {QStringLiteral("shelfItemSize"), 100.0},
                                              {QStringLiteral("windowEdge"), 3},
                                              {QStringLiteral("windowAlignment"), 2},
                                              {QStringLiteral("autoHideTimeout"), 3.0}};
    QCOMPARE(f.values, expected);
    // Equal values may still be of different types.
    for (auto value = expected.begin(); value != expected.end(); ++value)
        QVERIFY2(f.values.value(value.key()).typeId() == value->typeId(), qPrintable(value.key()));

    QCOMPARE(f.settings.autoShowDropWindow(), false);
    QCOMPARE(f.settings.autoAddScreenshots(), false);
    QCOMPARE(f.settings.removeItemsWhenDraggedOut(), false);
    QCOMPARE(f.settings.doubleClickAction(), 0);
    QCOMPARE(f.settings.showMenuBarIcon(), false);
    QCOMPARE(f.settings.showDockIcon(), true);
    QCOMPARE(f.settings.launchAtLogin(), true);
    QCOMPARE(f.settings.tintIntensity(), 0.7);
    QCOMPARE(f.settings.shelfItemSize(), 100.0);
    QCOMPARE(f.settings.windowEdge(), 3);
    QCOMPARE(f.settings.windowAlignment(), 2);
    QCOMPARE(f.settings.autoHideTimeout(), 3.0);
}

void AppSettingsTest::keys_without_a_property_read_as_the_stores_zero()
{
    Fixture f;
    for (const QString &key : {SettingsKey::autoShowTrigger, SettingsKey::excludeMode, SettingsKey::dragMode,
                               SettingsKey::fileNameDisplay}) {
        QCOMPARE(f.settings.defaults.integer(key), 0);
        f.values.insert(key, QStringLiteral("2"));
        QCOMPARE(f.settings.defaults.integer(key), 0);
        f.values.insert(key, 2.0);
        QCOMPARE(f.settings.defaults.integer(key), 2);
    }
    for (const QString &key :
         {SettingsKey::hideFileExtensions, SettingsKey::disableAnimations, SettingsKey::skipClearAllConfirmation,
          SettingsKey::hasShownUpdatePrompt, SettingsKey::autoCheckUpdates}) {
        QCOMPARE(f.settings.defaults.boolean(key), false);
        f.values.insert(key, QStringLiteral("true"));
        QCOMPARE(f.settings.defaults.boolean(key), false);
        f.values.insert(key, true);
        QCOMPARE(f.settings.defaults.boolean(key), true);
    }
}

void AppSettingsTest::a_tint_colour_survives_the_store()
{
    Fixture f;
    const QColor color(10, 200, 30, 128);
    f.settings.setTintColor(color);
    QVERIFY(f.values.contains(QStringLiteral("tintColorData")));
    QCOMPARE(f.values.value(SettingsKey::tintColorData).typeId(), int(QMetaType::QByteArray));
    QCOMPARE(f.settings.tintColor(), color);
}

void AppSettingsTest::data_that_is_no_colour_reads_as_the_accent_colour()
{
    Fixture f;
    f.values.insert(SettingsKey::tintColorData, QByteArray("not a colour"));
    QCOMPARE(f.settings.tintColor(), f.virtualPlatform.appearance.accent);
    // The accent colour is asked for afresh: the user may have changed it.
    f.virtualPlatform.appearance.accent = Qt::red;
    QCOMPARE(f.settings.tintColor(), QColor(Qt::red));
}

void AppSettingsTest::a_colour_that_cannot_be_archived_removes_the_stored_one()
{
    Fixture f;
    f.settings.setTintColor(Qt::green);
    f.settings.setTintColor(QColor());
    QVERIFY(!f.values.contains(SettingsKey::tintColorData));
    QCOMPARE(f.settings.tintColor(), f.virtualPlatform.appearance.accent);
}

void AppSettingsTest::excluded_applications_that_are_no_string_array_count_as_none()
{
    Fixture f;
    const auto read = [&f] { return f.settings.defaults.stringArray(SettingsKey::excludedBundleIDs); };
    QCOMPARE(read(), QStringList());
    f.values.insert(SettingsKey::excludedBundleIDs, QVariantList{QStringLiteral("a"), QStringLiteral("b")});
    QCOMPARE(read(), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    f.values.insert(SettingsKey::excludedBundleIDs, QVariantList{QStringLiteral("a"), 1.0});
    QCOMPARE(read(), QStringList());
    f.values.insert(SettingsKey::excludedBundleIDs, QStringLiteral("a"));
    QCOMPARE(read(), QStringList());
}

void AppSettingsTest::writing_a_setting_posts_nothing_and_notifications_reach_their_name_only()
{
    Fixture f;
    NotificationCenter center;
    QStringList seen;
    auto observer = std::make_unique<QObject>();
    center.observe(Notifications::settingsChanged, observer.get(),
                   [&seen](const QVariantMap &) { seen.append(QStringLiteral("settings")); });
    center.observe(Notifications::appearancePaneActive, observer.get(), [&seen](const QVariantMap &userInfo) {
        seen.append(userInfo.value(QStringLiteral("active")).toBool() ? QStringLiteral("active")
                                                                      : QStringLiteral("inactive"));
    });
    f.settings.setWindowEdge(2);
    QVERIFY(seen.isEmpty());
    center.post(QStringLiteral("com.orvane.Parklet.settingsChanged"));
    center.post(QStringLiteral("com.orvane.Parklet.appearancePaneActive"), {{QStringLiteral("active"), true}});
    center.post(QStringLiteral("com.orvane.Parklet.openPreferences"));
    center.post(QStringLiteral("com.orvane.Parklet.shelfItemsChanged"));
    QCOMPARE(seen, (QStringList{QStringLiteral("settings"), QStringLiteral("active")}));
    observer.reset();
    center.post(Notifications::settingsChanged);
    QCOMPARE(seen.size(), 2);
}

PARKLET_GUILESS_TEST(AppSettingsTest)
#include "AppSettingsTest.moc"
