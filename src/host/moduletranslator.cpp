#include "moduletranslator.h"

#include "cmvalueitem.h"
#include "tarnconstants.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>
#include <QTranslator>

ModuleTranslator::ModuleTranslator(QString const& moduleFile, QObject* parent) : QObject(parent)
{
    QFileInfo const module(moduleFile);
    mDirectory = module.absoluteDir().filePath(QStringLiteral("translations"));
    mName = module.completeBaseName().section(QLatin1Char('.'), 0, 0);
    if (mName.startsWith(QLatin1String("lib")))
        mName.remove(0, 3);
    // The watcher is given the current language first, then each change.
    auto* language = new CMValueItem(this, TarnUILanguagePath());
    connect(language, &CMValueItem::changed, this, [this](TarnValue const& value) { load(value); });
}

ModuleTranslator::~ModuleTranslator()
{
    if (mTranslator)
        QCoreApplication::removeTranslator(mTranslator);
}

void ModuleTranslator::load(TarnValue const& language)
{
    if (mTranslator) {
        QCoreApplication::removeTranslator(mTranslator);
        delete mTranslator;
        mTranslator = nullptr;
        mFile.clear();
    }
    QString const name = language.string_();
    if (name.isEmpty())
        return;
    auto* translator = new QTranslator(this);
    // QLocale keeps "C" for a name it doesn't know, which has no catalogue.
    if (!translator->load(QLocale(name), mName, QStringLiteral("_"), mDirectory)) {
        delete translator;
        return;
    }
    mTranslator = translator;
    mFile = translator->filePath();
    QCoreApplication::installTranslator(mTranslator);
}
