// SPDX-License-Identifier: MIT
#include "settings/AppSettings.h"
#include "settings/Notifications.h"
#include "tests/support/TestProgram.h"
#include "tests/support/VirtualPlatform.h"

#include <QTest>

using namespace Qt::StringLiterals;

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
    using namespace Settings;
    const std::pair<QString, const char *> names[] = {
        {autoShowDropWindow.key, "autoShowDropWindow"},
        {autoShowTrigger.key, "autoShowTrigger"},
        {excludeMode.key, "excludeMode"},
        {excludedBundleIDs.key, "excludedBundleIDs"},
        {doubleClickAction.key, "doubleClickAction"},
        {removeItemsWhenDraggedOut.key, "removeItemsWhenDraggedOut"},
        {autoAddScreenshots.key, "autoAddScreenshots"},
        {dragMode.key, "dragMode"},
        {showMenuBarIcon.key, "showMenuBarIcon"},
        {showDockIcon.key, "showDockIcon"},
        {launchAtLogin.key, "launchAtLogin"},
        {tintColorData.key, "tintColorData"},
        {tintIntensity.key, "tintIntensity"},
        {shelfItemSize.key, "shelfItemSize"},
        {windowEdge.key, "windowEdge"},
        {windowAlignment.key, "windowAlignment"},
        {fileNameDisplay.key, "fileNameDisplay"},
        {hideFileExtensions.key, "hideFileExtensions"},
        {disableAnimations.key, "disableAnimations"},
        {autoHideTimeout.key, "autoHideTimeout"},
        {skipClearAllConfirmation.key, "skipClearAllConfirmation"},
        {hasShownUpdatePrompt.key, "hasShownUpdatePrompt"},
        {autoCheckUpdates.key, "autoCheckUpdates"},
    };
    QCOMPARE(std::size(names), size_t(23));
    for (const auto &[key, name] : names)
        QCOMPARE(key, QString::fromLatin1(name));
}

void AppSettingsTest::every_notification_has_its_name()
{
    QCOMPARE(Notifications::openPreferences, u"com.orvane.Parklet.openPreferences"_s);
    QCOMPARE(Notifications::shelfItemsChanged, u"com.orvane.Parklet.shelfItemsChanged"_s);
    QCOMPARE(Notifications::settingsChanged, u"com.orvane.Parklet.settingsChanged"_s);
    QCOMPARE(Notifications::appearancePaneActive, u"com.orvane.Parklet.appearancePaneActive"_s);
}

void AppSettingsTest::a_fresh_store_reads_as_the_defaults()
{
    Fixture f;
    QCOMPARE(f.settings.get(Settings::autoShowDropWindow), true);
    QCOMPARE(f.settings.get(Settings::autoAddScreenshots), true);
    QCOMPARE(f.settings.get(Settings::removeItemsWhenDraggedOut), true);
    QCOMPARE(f.settings.get(Settings::doubleClickAction), DoubleClickAction::SelectAll);
    QCOMPARE(f.settings.get(Settings::showMenuBarIcon), true);
    QCOMPARE(f.settings.get(Settings::showDockIcon), false);
    QCOMPARE(f.settings.get(Settings::launchAtLogin), false);
    QCOMPARE(f.settings.tintColor(), f.virtualPlatform.appearance.accent);
    QCOMPARE(f.settings.get(Settings::tintIntensity), 0.4);
    QCOMPARE(f.settings.get(Settings::shelfItemSize), 72.0);
    QCOMPARE(f.settings.get(Settings::windowEdge), WindowEdge::Right);
    QCOMPARE(f.settings.get(Settings::windowAlignment), WindowAlignment::Center);
    QCOMPARE(f.settings.get(Settings::autoHideTimeout), 0.0);
    QVERIFY(f.values.isEmpty());
}

void AppSettingsTest::a_value_of_the_wrong_type_reads_as_the_default()
{
    Fixture f;
    const QVariant wrong[] = {u"100"_s, QVariantList{1}, QByteArray("1")};
    for (const QVariant &value : wrong) {
        for (const QString &key :
             {Settings::autoShowDropWindow.key, Settings::autoAddScreenshots.key,
              Settings::removeItemsWhenDraggedOut.key, Settings::doubleClickAction.key, Settings::showMenuBarIcon.key,
              Settings::tintIntensity.key, Settings::shelfItemSize.key, Settings::windowEdge.key,
              Settings::windowAlignment.key, Settings::autoHideTimeout.key, Settings::tintColorData.key})
            f.values.insert(key, value);
        QCOMPARE(f.settings.get(Settings::autoShowDropWindow), true);
        QCOMPARE(f.settings.get(Settings::autoAddScreenshots), true);
        QCOMPARE(f.settings.get(Settings::removeItemsWhenDraggedOut), true);
        QCOMPARE(f.settings.get(Settings::doubleClickAction), DoubleClickAction::SelectAll);
        QCOMPARE(f.settings.get(Settings::showMenuBarIcon), true);
        QCOMPARE(f.settings.get(Settings::tintIntensity), 0.4);
        QCOMPARE(f.settings.get(Settings::shelfItemSize), 72.0);
        QCOMPARE(f.settings.get(Settings::windowEdge), WindowEdge::Right);
        QCOMPARE(f.settings.get(Settings::windowAlignment), WindowAlignment::Center);
        QCOMPARE(f.settings.get(Settings::autoHideTimeout), 0.0);
        QCOMPARE(f.settings.tintColor(), f.virtualPlatform.appearance.accent);
    }
}

void AppSettingsTest::a_number_reads_as_its_truth_value()
{
    Fixture f;
    f.values.insert(Settings::showMenuBarIcon.key, 0.0);
    QCOMPARE(f.settings.get(Settings::showMenuBarIcon), false);
    f.values.insert(Settings::showMenuBarIcon.key, 2.0);
    QCOMPARE(f.settings.get(Settings::showMenuBarIcon), true);
    f.values.insert(Settings::windowEdge.key, true);
    QCOMPARE(f.settings.get(Settings::windowEdge), WindowEdge::Right);
    // A number that does not fit an int is not an edge.
    f.values.insert(Settings::windowEdge.key, 1e300);
    QCOMPARE(f.settings.get(Settings::windowEdge), WindowEdge::Right);
}

void AppSettingsTest::a_number_of_any_type_is_a_number()
{
    Fixture f;
    const QVariant numbers[] = {50, 50U, qint64(50), quint64(50), 50.0F, 50.0};
    for (const QVariant &number : numbers) {
        f.values.insert(Settings::shelfItemSize.key, number);
        QCOMPARE(f.settings.get(Settings::shelfItemSize), 50.0);
        // Typed and direct access to the store interpret a number in the same way.
        QCOMPARE(f.settings.defaults.number(Settings::shelfItemSize.key), 50.0);
    }
}

void AppSettingsTest::the_dock_icon_and_login_item_read_as_false_unless_they_are_true()
{
    Fixture f;
    f.values.insert(Settings::showDockIcon.key, u"yes"_s);
    f.values.insert(Settings::launchAtLogin.key, QVariantList{true});
    QCOMPARE(f.settings.get(Settings::showDockIcon), false);
    QCOMPARE(f.settings.get(Settings::launchAtLogin), false);
    f.values.insert(Settings::showDockIcon.key, true);
    f.values.insert(Settings::launchAtLogin.key, 1.0);
    QCOMPARE(f.settings.get(Settings::showDockIcon), true);
    QCOMPARE(f.settings.get(Settings::launchAtLogin), true);
}

void AppSettingsTest::a_written_property_is_stored_under_its_own_key()
{
    Fixture f;
    f.settings.set(Settings::autoShowDropWindow, false);
    f.settings.set(Settings::autoAddScreenshots, false);
    f.settings.set(Settings::removeItemsWhenDraggedOut, false);
    f.settings.set(Settings::doubleClickAction, DoubleClickAction::OpenFile);
    f.settings.set(Settings::showMenuBarIcon, false);
    f.settings.set(Settings::showDockIcon, true);
    f.settings.set(Settings::launchAtLogin, true);
    f.settings.set(Settings::tintIntensity, 0.7);
    f.settings.set(Settings::shelfItemSize, 100.0);
    f.settings.set(Settings::windowEdge, WindowEdge::Bottom);
    f.settings.set(Settings::windowAlignment, WindowAlignment::End);
    f.settings.set(Settings::autoHideTimeout, 3.0);

    const QMap<QString, QVariant> expected = {{u"autoShowDropWindow"_s, false},
                                              {u"autoAddScreenshots"_s, false},
                                              {u"removeItemsWhenDraggedOut"_s, false},
                                              {u"doubleClickAction"_s, 0},
                                              {u"showMenuBarIcon"_s, false},
                                              {u"showDockIcon"_s, true},
                                              {u"launchAtLogin"_s, true},
                                              {u"tintIntensity"_s, 0.7},
                                              {u"shelfItemSize"_s, 100.0},
                                              {u"windowEdge"_s, 3},
                                              {u"windowAlignment"_s, 2},
                                              {u"autoHideTimeout"_s, 3.0}};
    QCOMPARE(f.values, expected);
    // Equal values may have different types.
    for (auto value = expected.begin(); value != expected.end(); ++value)
        QVERIFY2(f.values.value(value.key()).typeId() == value->typeId(), qPrintable(value.key()));

    QCOMPARE(f.settings.get(Settings::autoShowDropWindow), false);
    QCOMPARE(f.settings.get(Settings::autoAddScreenshots), false);
    QCOMPARE(f.settings.get(Settings::removeItemsWhenDraggedOut), false);
    QCOMPARE(f.settings.get(Settings::doubleClickAction), DoubleClickAction::OpenFile);
    QCOMPARE(f.settings.get(Settings::showMenuBarIcon), false);
    QCOMPARE(f.settings.get(Settings::showDockIcon), true);
    QCOMPARE(f.settings.get(Settings::launchAtLogin), true);
    QCOMPARE(f.settings.get(Settings::tintIntensity), 0.7);
    QCOMPARE(f.settings.get(Settings::shelfItemSize), 100.0);
    QCOMPARE(f.settings.get(Settings::windowEdge), WindowEdge::Bottom);
    QCOMPARE(f.settings.get(Settings::windowAlignment), WindowAlignment::End);
    QCOMPARE(f.settings.get(Settings::autoHideTimeout), 3.0);
}

void AppSettingsTest::keys_without_a_property_read_as_the_stores_zero()
{
    Fixture f;
    const auto readsAsStored = [&f]<typename Choice>(const Setting<Choice> &choice) {
        QCOMPARE(f.settings.get(choice), Choice(0));
        f.values.insert(choice.key, u"2"_s);
        QCOMPARE(f.settings.get(choice), Choice(0));
        // A number without a choice is returned unchanged, even one that does not fit an int.
        for (const double number : {2.0, 5.0, -1.0, 4294967296.0}) {
            f.values.insert(choice.key, number);
            QCOMPARE(f.settings.get(choice), Choice(qint64(number)));
        }
    };
    readsAsStored(Settings::autoShowTrigger);
    readsAsStored(Settings::excludeMode);
    readsAsStored(Settings::dragMode);
    readsAsStored(Settings::fileNameDisplay);
    for (const Setting<bool> &setting :
         {Settings::hideFileExtensions, Settings::disableAnimations, Settings::skipClearAllConfirmation,
          Settings::hasShownUpdatePrompt, Settings::autoCheckUpdates}) {
        QCOMPARE(f.settings.get(setting), false);
        f.values.insert(setting.key, u"true"_s);
        QCOMPARE(f.settings.get(setting), false);
        f.values.insert(setting.key, true);
        QCOMPARE(f.settings.get(setting), true);
    }
}

void AppSettingsTest::a_tint_colour_survives_the_store()
{
    Fixture f;
    const QColor color(10, 200, 30, 128);
    f.settings.setTintColor(color);
    QVERIFY(f.values.contains(u"tintColorData"_s));
    QCOMPARE(f.values.value(Settings::tintColorData.key).typeId(), int(QMetaType::QByteArray));
    QCOMPARE(f.settings.tintColor(), color);
}

void AppSettingsTest::data_that_is_no_colour_reads_as_the_accent_colour()
{
    Fixture f;
    f.values.insert(Settings::tintColorData.key, QByteArray("not a colour"));
    QCOMPARE(f.settings.tintColor(), f.virtualPlatform.appearance.accent);
    // The accent colour is read each time, because the user may have changed it.
    f.virtualPlatform.appearance.accent = Qt::red;
    QCOMPARE(f.settings.tintColor(), QColor(Qt::red));
}

void AppSettingsTest::a_colour_that_cannot_be_archived_removes_the_stored_one()
{
    Fixture f;
    f.settings.setTintColor(Qt::green);
    f.settings.setTintColor(QColor());
    QVERIFY(!f.values.contains(Settings::tintColorData.key));
    QCOMPARE(f.settings.tintColor(), f.virtualPlatform.appearance.accent);
}

void AppSettingsTest::excluded_applications_that_are_no_string_array_count_as_none()
{
    Fixture f;
    const auto read = [&f] { return f.settings.get(Settings::excludedBundleIDs); };
    QCOMPARE(read(), QStringList());
    f.values.insert(Settings::excludedBundleIDs.key, QVariantList{u"a"_s, u"b"_s});
    QCOMPARE(read(), (QStringList{u"a"_s, u"b"_s}));
    f.values.insert(Settings::excludedBundleIDs.key, QVariantList{u"a"_s, 1.0});
    QCOMPARE(read(), QStringList());
    f.values.insert(Settings::excludedBundleIDs.key, u"a"_s);
    QCOMPARE(read(), QStringList());
}

void AppSettingsTest::writing_a_setting_posts_nothing_and_notifications_reach_their_name_only()
{
    Fixture f;
    NotificationCenter center;
    QStringList seen;
    auto observer = std::make_unique<QObject>();
    center.observe(Notifications::settingsChanged, observer.get(),
                   [&seen](const QVariantMap &) { seen.append(u"settings"_s); });
    center.observe(Notifications::appearancePaneActive, observer.get(), [&seen](const QVariantMap &userInfo) {
        seen.append(userInfo.value(u"active"_s).toBool() ? u"active"_s : u"inactive"_s);
    });
    f.settings.set(Settings::windowEdge, WindowEdge::Top);
    QVERIFY(seen.isEmpty());
    center.post(u"com.orvane.Parklet.settingsChanged"_s);
    center.post(u"com.orvane.Parklet.appearancePaneActive"_s, {{u"active"_s, true}});
    center.post(u"com.orvane.Parklet.openPreferences"_s);
    center.post(u"com.orvane.Parklet.shelfItemsChanged"_s);
    QCOMPARE(seen, (QStringList{u"settings"_s, u"active"_s}));
    observer.reset();
    center.post(Notifications::settingsChanged);
    QCOMPARE(seen.size(), 2);
}

PARKLET_GUILESS_TEST(AppSettingsTest)
#include "AppSettingsTest.moc"
