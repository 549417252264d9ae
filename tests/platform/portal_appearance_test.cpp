#include "platform/appearance/portal_appearance.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quiv;

namespace {

const QString PortalPath = u"/org/freedesktop/portal/desktop"_s;
const QString PortalService = u"org.freedesktop.portal.Desktop"_s;
const QString Appearance = u"org.freedesktop.appearance"_s;
const QString Gnome = u"org.gnome.desktop.interface"_s;

QDBusConnection portalBus() {
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s);
}

QVariant colour(double red, double green, double blue) {
    QDBusArgument made;
    made.beginStructure();
    made << red << green << blue;
    made.endStructure();
    return QVariant::fromValue(made);
}

} // namespace

using SettingsByNamespace = QMap<QString, QVariantMap>;

// A desktop's portal with settings that the test changes.
class SettingsPortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    SettingsPortal() {
        portalBus().registerObject(
            PortalPath, this, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
        portalBus().registerService(PortalService);
    }
    ~SettingsPortal() override {
        portalBus().unregisterService(PortalService);
        portalBus().unregisterObject(PortalPath);
    }
    void change(const QString& space, const QString& key, const QVariant& value) {
        settings[space][key] = value;
        Q_EMIT SettingChanged(space, key, QDBusVariant(value));
    }

    SettingsByNamespace settings;

public Q_SLOTS:
    SettingsByNamespace ReadAll(const QStringList& spaces) {
        SettingsByNamespace asked = settings;
        asked.removeIf([&](const auto& group) { return !spaces.contains(group.key()); });
        return asked;
    }

Q_SIGNALS:
    void SettingChanged(const QString& space, const QString& key, const QDBusVariant& value);
};

class PortalAppearanceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qDBusRegisterMetaType<SettingsByNamespace>(); }

    void theLookIsFollowedWhileItChanges() {
        PortalAppearance appearance; // before there is a portal
        QCOMPARE(appearance.look(), DesktopLook());
        SettingsPortal portal;
        portal.settings[Appearance] = {{u"color-scheme"_s, 1u},
                                       {u"accent-color"_s, colour(0.25, 0.5, 1)}};
        portal.settings[Gnome] = {{u"font-name"_s, u"Noto Sans Bold 14"_s},
                                  {u"text-scaling-factor"_s, 1.25}};
        PortalAppearance late;
        for (const PortalAppearance* each : {&appearance, &late}) {
            QTRY_COMPARE(each->look().scheme, DesktopLook::Scheme::Dark);
            QCOMPARE(each->look().accent, (std::array{0.25, 0.5, 1.0}));
            QCOMPARE(each->look().fontFamily, u"Noto Sans"_s);
            QCOMPARE(each->look().fontPoints, 14.0);
            QCOMPARE(each->look().textScale, 1.25);
        }
        portal.change(Appearance, u"color-scheme"_s, 2u);
        portal.change(Appearance, u"contrast"_s, 1u);
        portal.change(Appearance, u"accent-color"_s, colour(-1, -1, -1));
        portal.change(Gnome, u"enable-animations"_s, false);
        QTRY_VERIFY(appearance.look().isMotionReduced);
        QVERIFY(appearance.look().isHighContrast);
        QCOMPARE(appearance.look().scheme, DesktopLook::Scheme::Light);
        QCOMPARE(appearance.look().accent, std::nullopt);
    }

    void whatNobodyCanMeanIsNotTakenOver() {
        const auto fontPoints = [](const QString& description) {
            return desktopLook({{Gnome, {{u"font-name"_s, description}}}}).fontPoints;
        };
        for (const char* bad : {"", "Cantarell", "Cantarell 0", "Cantarell nan", "Sans 9999", "11"})
            QVERIFY2(fontPoints(QString::fromLatin1(bad)) == 0, bad);
        QCOMPARE(fontPoints(u"Sans 9.5"_s), 9.5);
        const DesktopSettings kde{
            {u"org.kde.kdeglobals.General"_s, {{u"font"_s, u"Hack,10,-1,5,50,0"_s}}},
            {u"org.kde.kdeglobals.KDE"_s, {{u"AnimationDurationFactor"_s, u"0"_s}}},
            {Gnome, {{u"gtk-theme"_s, u"Breeze-Dark"_s}, {u"text-scaling-factor"_s, -3.0}}}};
        const DesktopLook look = desktopLook(kde);
        QCOMPARE(look.fontFamily, u"Hack"_s);
        QCOMPARE(look.scheme, DesktopLook::Scheme::Dark);
        QVERIFY(look.isMotionReduced);
        QCOMPARE(look.textScale, 1.0);
    }
};

QTEST_GUILESS_MAIN(PortalAppearanceTest)
#include "portal_appearance_test.moc"
