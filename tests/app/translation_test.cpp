// SPDX-License-Identifier: GPL-3.0-or-later

// The texts of the program and of Qt in the languages of app/translations.
#include "app/actions.h"
#include "app/look.h"
#include "app/translation.h"

#include <QApplication>
#include <QDir>
#include <QLocale>
#include <QTranslator>

#include <gtest/gtest.h>

namespace complexion {
namespace {

using namespace Qt::StringLiterals;

class Translation : public testing::Test {
protected:
    Translation() { applyLook(*qApp, 1); } // loads the resources
    ~Translation() override { removeAll(); }

    static void removeAll() { qDeleteAll(qApp->findChildren<QTranslator*>(Qt::FindDirectChildrenOnly)); }

    static std::vector<QLocale> locales() {
        std::vector<QLocale> all;
        for (const QString& file : QDir(u":/i18n"_s).entryList())
            all.emplace_back(file.section(u'.', 0, 0).section(u'_', 1));
        return all;
    }

    static QString toolkitText(const char* context, const char* text) {
        return QCoreApplication::translate(context, text);
    }
};

TEST_F(Translation, NineLanguagesAreBuiltIn) {
    std::vector<std::string> names;
    for (const QLocale& locale : locales())
        names.push_back(locale.name().toStdString());
    EXPECT_EQ(names, (std::vector<std::string>{"de_DE", "es_ES", "fr_FR", "it_IT", "ja_JP", "nl_NL", "pl_PL",
                                               "pt_BR", "zh_CN"}));
}

TEST_F(Translation, TheToolkitSpeaksEveryLanguageOfTheProgram) {
    for (const QLocale& locale : locales()) {
        SCOPED_TRACE(locale.name().toStdString());
        installTranslations(*qApp, locale);
        EXPECT_NE(QCoreApplication::translate("Alerts", "Could not save the image."),
                  u"Could not save the image."_s);
        for (const auto& [context, text] : {std::pair("QLineEdit", "&Copy"),
                                            {"QWidgetTextControl", "&Paste"},
                                            {"QColorDialog", "&Basic colors"},
                                            {"QPlatformTheme", "Cancel"}})
            EXPECT_NE(toolkitText(context, text), QString::fromLatin1(text)) << context;
        removeAll();
    }
}

TEST_F(Translation, ShortcutsHaveTheNamesOnTheKeyboard) {
    installTranslations(*qApp, QLocale(u"de_DE"_s));
    const Actions actions(nullptr);
    EXPECT_TRUE(actions.saveImage->toolTip().endsWith(u"(Strg+S)"_s))
        << actions.saveImage->toolTip().toStdString();
    removeAll();
    installTranslations(*qApp, QLocale(u"fr_FR"_s));
    EXPECT_EQ(QKeySequence(Qt::SHIFT | Qt::Key_N).toString(QKeySequence::NativeText), u"Maj+N"_s);
}

TEST_F(Translation, WithoutATranslationTheTextsAreEnglish) {
    installTranslations(*qApp, QLocale(u"is_IS"_s));
    EXPECT_EQ(QCoreApplication::translate("Alerts", "Could not save the image."),
              u"Could not save the image."_s);
    EXPECT_EQ(Actions(nullptr).undo->text(), u"Undo"_s);
}

} // namespace
} // namespace complexion
