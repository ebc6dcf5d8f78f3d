#include "program.h"

ProgramCommand programCommand(QString const& program, QStringList const& arguments)
{
    QStringList emulator = QString::fromUtf8(TARN_TEST_EMULATOR).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (emulator.isEmpty())
        return {program, arguments};
    QString const runner = emulator.takeFirst();
    return {runner, emulator << program << arguments};
}

bool runsUnderEmulator()
{
    return sizeof(TARN_TEST_EMULATOR) > 1;
}

bool sanitized()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    return true;
#endif
#endif
    return false;
}
