#pragma once

#include <QObject>
#include <QString>

class QTranslator;
class TarnValue;

// Shows a module's texts in the user's language, as the device's platform
// does: it loads the module's catalogue for the UI language from the
// "translations" directory beside the module file (libNAME.so has
// NAME_de.qm), and again whenever the language changes. A language without
// a catalogue of its own takes its base language's (de_AT takes de); one
// without either shows the module's own texts.
class ModuleTranslator : public QObject
{
    Q_OBJECT
public:
    ModuleTranslator(QString const& moduleFile, QObject* parent = nullptr);
    ~ModuleTranslator() override;

    // The catalogue in use, or empty while the module's own texts show.
    QString catalogueFile() const { return mFile; }

private:
    void load(TarnValue const& language);

    QString mDirectory;
    QString mName;
    QString mFile;
    QTranslator* mTranslator = nullptr;
};
