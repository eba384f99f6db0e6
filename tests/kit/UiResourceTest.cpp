#include "kit/resources/UiResource.h"

#include "kit/resources/UiResourceChangeHandler.h"
#include "kit/widgets/CheckBox.h"
#include "tests/support/TestCase.h"
#include "utils/LogCenter.h"

#include <QDirIterator>
#include <QFile>
#include <QFontInfo>
#include <QFontMetrics>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <functional>
#include <memory>

using namespace KZ;
using SizeSet = CUiResource::SizeSet;
using Theme = CUiResource::Theme;

namespace {

class Handler : public CUiResourceChangeHandler
{
public:
    explicit Handler(std::function<void()> action = {}) : m_action(std::move(action)) {}
    void onUiResourceChanged() override
    {
        ++calls;
        if (m_action)
            m_action();
    }

    int calls = 0;

private:
    std::function<void()> m_action;
};

/// Whether anything is drawn, that is, any pixel is not transparent.
bool isDrawn(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 0)
                return true;
        }
    }
    return false;
}

} // namespace

class UiResourceTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void everyKeyInTheSourcesIsDefined();
    void sizesArePositive();
    void onlyTheSettingsDialogHasCompactSizes();
    void colorsDifferBetweenTheThemes();
    void anUnknownKeyIsVisibleAndLoggedOnce();
    void handlersHearOfAChangeOnly();
    void handlersHearOfOtherSizes();
    void aHandlerMayDestroyOthersAndItself();
    void aHandlerMadeMeanwhileIsNotCalled();
    void everyIconIsDrawnInBothThemes();
    void iconsFollowTheTheme();
    void iconsAreRenderedAtTheScreensResolution();
    void disabledIconsArePaler();
    void anIconTakesAnotherColor();
    void chineseGlyphsComeFromAChineseFont();
    void captionsFitTheSizesMadeForThem_data();
    void captionsFitTheSizesMadeForThem();
    void shownWidgetsRepaintInTheNewTheme();
};

void UiResourceTest::cleanup()
{
    CUiResource::setTheme(Theme::Light);
    CUiResource::setSizeSet(SizeSet::Standard);
    TestCase::cleanup();
}

void UiResourceTest::everyKeyInTheSourcesIsDefined()
{
    static const QRegularExpression literal(
        QStringLiteral("\"((?:gw_siz|gw_img|clr|fnt)_[A-Za-z0-9_]*)\""));
    int found = 0;
    QStringList missing;
    for (const char* area : {"kit", "authsetting", "backend", "host"}) {
        QDirIterator files(QStringLiteral(PROJECT_SOURCE_DIR "/") + QLatin1String(area),
                           {QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            QVERIFY(file.open(QIODevice::ReadOnly));
            auto matches = literal.globalMatch(QString::fromUtf8(file.readAll()));
            while (matches.hasNext()) {
                const QString key = matches.next().captured(1);
                ++found;
                if (!CUiResource::hasKey(key))
                    missing.append(key + QStringLiteral(" in ") + file.fileName());
            }
        }
    }
    QVERIFY2(found > 100, "the sources were not found");
    QVERIFY2(missing.isEmpty(), qPrintable(missing.join(QLatin1Char('\n'))));
}

void UiResourceTest::sizesArePositive()
{
    int sizes = 0;
    const QStringList keys = CUiResource::keys();
    for (const QString& key : keys) {
        if (!key.startsWith(QLatin1String("gw_siz_")))
            continue;
        ++sizes;
        QVERIFY2(CUiResource::getSize(key) > 0, qPrintable(key));
        QVERIFY2(CUiResource::getSize(key) < 2000, qPrintable(key));
    }
    QVERIFY(sizes > 40);
}

void UiResourceTest::onlyTheSettingsDialogHasCompactSizes()
{
    int smaller = 0;
    const QStringList keys = CUiResource::keys();
    for (const QString& key : keys) {
        if (!key.startsWith(QLatin1String("gw_siz_")))
            continue;
        const int standard = CUiResource::getSize(key, SizeSet::Standard);
        const int compact = CUiResource::getSize(key, SizeSet::Compact);
        QVERIFY2(compact > 0 && compact <= standard, qPrintable(key));
        if (compact == standard)
            continue;
        ++smaller;
        QVERIFY2(key.startsWith(QLatin1String("gw_siz_setting_")) ||
                     key.startsWith(QLatin1String("gw_siz_auth_setting_")),
                 qPrintable(key));
    }
    QVERIFY(smaller > 5);
}

void UiResourceTest::handlersHearOfOtherSizes()
{
    const QString key = QStringLiteral("gw_siz_setting_margin");
    QCOMPARE(CUiResource::getSize(key), CUiResource::getSize(key, SizeSet::Standard));
    int seen = 0;
    Handler handler([&] { seen = CUiResource::getSize(key); });
    CUiResource::setSizeSet(SizeSet::Standard);
    QCOMPARE(handler.calls, 0);
    CUiResource::setSizeSet(SizeSet::Compact);
    QCOMPARE(handler.calls, 1);
    QCOMPARE(seen, CUiResource::getSize(key, SizeSet::Compact));
    QCOMPARE(CUiResource::sizeSet(), SizeSet::Compact);
    CUiResource::setSizeSet(SizeSet::Compact);
    QCOMPARE(handler.calls, 1);
}

void UiResourceTest::colorsDifferBetweenTheThemes()
{
    for (const char* key : {"clr_window", "clr_panel", "clr_text", "clr_border"}) {
        CUiResource::setTheme(Theme::Light);
        const QColor light = CUiResource::getColor(QLatin1String(key));
        CUiResource::setTheme(Theme::Dark);
        QVERIFY2(light != CUiResource::getColor(QLatin1String(key)), key);
    }
    QVERIFY(CUiResource::palette().color(QPalette::Window).lightnessF() < 0.3f);
    CUiResource::setTheme(Theme::Light);
    QVERIFY(CUiResource::palette().color(QPalette::Window).lightnessF() > 0.8f);
}

void UiResourceTest::anUnknownKeyIsVisibleAndLoggedOnce()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("errors.log"));
    QVERIFY(utils::CLogCenter::configure(path));
    const QString key = QStringLiteral("no_such_key");
    QVERIFY(!CUiResource::hasKey(key));
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(CUiResource::getSize(key), 16);
        QCOMPARE(CUiResource::getColor(key), QColor(255, 0, 255));
        QVERIFY(isDrawn(CUiResource::getIcon(key).pixmap(16, 16).toImage()));
        QCOMPARE(CUiResource::getFont(key),
                 CUiResource::getFont(QStringLiteral("fnt_default_normal")));
    }
    utils::CLogCenter::configure(QString());
    QFile log(path);
    QVERIFY(log.open(QIODevice::ReadOnly));
    QCOMPARE(log.readAll().count("no_such_key"), 4);
}

void UiResourceTest::handlersHearOfAChangeOnly()
{
    Handler handler;
    CUiResource::setTheme(CUiResource::theme());
    QCOMPARE(handler.calls, 0);
    CUiResource::setTheme(Theme::Dark);
    QCOMPARE(handler.calls, 1);
    QCOMPARE(CUiResource::theme(), Theme::Dark);
}

void UiResourceTest::aHandlerMayDestroyOthersAndItself()
{
    auto before = std::make_unique<Handler>();
    std::unique_ptr<Handler> self;
    std::unique_ptr<Handler> after;
    self = std::make_unique<Handler>([&] {
        before.reset();
        after.reset();
        auto* const dying = self.release();
        delete dying;
    });
    after = std::make_unique<Handler>();
    Handler last;
    CUiResource::setTheme(Theme::Dark);
    QVERIFY(!before && !self && !after);
    QCOMPARE(last.calls, 1);
}

void UiResourceTest::aHandlerMadeMeanwhileIsNotCalled()
{
    std::unique_ptr<Handler> young;
    Handler maker([&] { young = std::make_unique<Handler>(); });
    CUiResource::setTheme(Theme::Dark);
    QCOMPARE(young->calls, 0);
    Handler* const kept = young.release();
    CUiResource::setTheme(Theme::Light);
    QCOMPARE(kept->calls, 1);
    delete kept;
}

void UiResourceTest::everyIconIsDrawnInBothThemes()
{
    int icons = 0;
    const QStringList keys = CUiResource::keys();
    for (const QString& key : keys) {
        if (!key.startsWith(QLatin1String("gw_img_")))
            continue;
        ++icons;
        for (const Theme theme : {Theme::Light, Theme::Dark}) {
            CUiResource::setTheme(theme);
            const QImage image = CUiResource::getIcon(key).pixmap(QSize(16, 16)).toImage();
            QVERIFY2(isDrawn(image), qPrintable(key));
        }
    }
    QVERIFY(icons > 20);
}

void UiResourceTest::iconsFollowTheTheme()
{
    const QIcon icon = CUiResource::getIcon(QStringLiteral("gw_img_kit_calendar"));
    const QImage light = icon.pixmap(16, 16).toImage();
    CUiResource::setTheme(Theme::Dark);
    QVERIFY(light != icon.pixmap(16, 16).toImage());
    CUiResource::setTheme(Theme::Light);
    QCOMPARE(icon.pixmap(16, 16).toImage(), light);
}

void UiResourceTest::iconsAreRenderedAtTheScreensResolution()
{
    const QIcon icon = CUiResource::getIcon(QStringLiteral("gw_img_kit_close"));
    const QPixmap sharp = icon.pixmap(QSize(16, 16), 2.0);
    QCOMPARE(sharp.size(), QSize(32, 32));
    QCOMPARE(sharp.devicePixelRatio(), 2.0);
    const QImage enlarged = icon.pixmap(QSize(16, 16), 1.0).toImage().scaled(32, 32);
    QImage plain = sharp.toImage();
    plain.setDevicePixelRatio(1.0);
    QVERIFY(plain != enlarged.convertToFormat(plain.format()));
}

void UiResourceTest::disabledIconsArePaler()
{
    const QIcon icon = CUiResource::getIcon(QStringLiteral("gw_img_kit_close"));
    QVERIFY(icon.pixmap(QSize(16, 16), QIcon::Normal).toImage() !=
            icon.pixmap(QSize(16, 16), QIcon::Disabled).toImage());
}

void UiResourceTest::anIconTakesAnotherColor()
{
    const QIcon icon = CUiResource::getIcon(QStringLiteral("gw_img_auth_export"),
                                            QStringLiteral("clr_text_on_accent"));
    const QImage image =
        icon.pixmap(QSize(48, 48)).toImage().convertToFormat(QImage::Format_ARGB32);
    int opaque = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) < 255)
                continue;
            ++opaque;
            QCOMPARE(QColor(image.pixel(x, y)), QColor(Qt::white));
        }
    }
    QVERIFY(opaque > 0);
}

void UiResourceTest::chineseGlyphsComeFromAChineseFont()
{
    int fonts = 0;
    const QStringList keys = CUiResource::keys();
    for (const QString& key : keys) {
        if (!key.startsWith(QLatin1String("fnt_")))
            continue;
        ++fonts;
        const QFont font = CUiResource::getFont(key);
        QVERIFY2(font.pixelSize() >= 11, qPrintable(key));
        QVERIFY2(QFontInfo(font).family().contains(QStringLiteral("CJK SC")), qPrintable(key));
        QVERIFY2(QFontMetrics(font).inFontUcs4(U'授'), qPrintable(key));
    }
    QVERIFY(fonts >= 2);
}

void UiResourceTest::captionsFitTheSizesMadeForThem_data()
{
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("widthKey");
    QTest::addColumn<int>("extra");
    const auto row = [](const char* name, const QString& caption, const char* widthKey, int extra) {
        QTest::newRow(name) << caption << QString::fromLatin1(widthKey) << extra;
    };
    row("button in a row", QStringLiteral("取消授权"), "gw_siz_auth_setting_account_btn_width", 12);
    row("main button", QStringLiteral("取消授权"),
        "gw_siz_auth_setting_accounts_authorize_btn_authorize_width", 24);
    row("close button", QStringLiteral("关闭"), "gw_siz_setting_inner_bottom_btn_width", 24);
    row("column of ticks", QStringLiteral("选择"), "gw_siz_table_column_select", 16);
    row("condition", QStringLiteral("可用保证金比例(%)"),
        "gw_siz_auth_setting_auth_advanced_key_width", 16);
    row("threshold", QStringLiteral("条件阈值 100.00"),
        "gw_siz_auth_setting_auth_advanced_value_width", 16);
    row("busy text", QStringLiteral("向服务器确认中……"),
        "gw_siz_setting_inner_bottom_progress_width", 0);
    row("date", QStringLiteral("2038-01-18"), "gw_siz_setting_accounts_editor_width", 80);
    row("date in the sub-user form", QStringLiteral("2038-01-18"),
        "gw_siz_setting_accounts_item_width", 80);
}

void UiResourceTest::captionsFitTheSizesMadeForThem()
{
    QFETCH(QString, caption);
    QFETCH(QString, widthKey);
    QFETCH(int, extra);
    const QFontMetrics metrics(CUiResource::getFont(QStringLiteral("fnt_default_normal")));
    for (const SizeSet set : {SizeSet::Standard, SizeSet::Compact})
        QVERIFY(metrics.horizontalAdvance(caption) + extra <= CUiResource::getSize(widthKey, set));
}

void UiResourceTest::shownWidgetsRepaintInTheNewTheme()
{
    CCheckBox box(1, nullptr);
    box.setPalette(CUiResource::palette());
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    const QImage light = box.grab().toImage();
    CUiResource::setTheme(Theme::Dark);
    QVERIFY(light != box.grab().toImage());
}

int main(int argc, char** argv)
{
    return runTest<UiResourceTest>(argc, argv);
}

#include "UiResourceTest.moc"
