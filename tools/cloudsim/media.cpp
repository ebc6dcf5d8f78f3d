#include "media.h"

#include <QCryptographicHash>

namespace cloudsim {

std::string coverImage(QString const& name)
{
    QByteArray const hash = QCryptographicHash::hash(name.toUtf8(), QCryptographicHash::Md5).toHex();
    QString const label = name.toHtmlEscaped();
    QString const svg = QString("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"300\" height=\"300\">"
                                "<rect width=\"300\" height=\"300\" fill=\"#%1\"/>"
                                "<text x=\"150\" y=\"160\" font-size=\"24\" text-anchor=\"middle\" "
                                "fill=\"white\">%2</text></svg>")
                            .arg(QString::fromLatin1(hash.left(6)), label);
    return svg.toStdString();
}

// 8 kHz, 8 bits, mono: the smallest wave a player takes without question.
std::string silentWave(int seconds)
{
    auto const le32 = [](std::string& s, quint32 v) {
        for (int i = 0; i < 4; ++i)
            s.push_back(static_cast<char>((v >> (8 * i)) & 0xff));
    };
    auto const le16 = [](std::string& s, quint16 v) {
        s.push_back(static_cast<char>(v & 0xff));
        s.push_back(static_cast<char>(v >> 8));
    };
    quint32 const rate = 8000;
    quint32 const samples = rate * static_cast<quint32>(seconds);
    std::string wave = "RIFF";
    le32(wave, 36 + samples);
    wave += "WAVEfmt ";
    le32(wave, 16);
    le16(wave, 1);
    le16(wave, 1);
    le32(wave, rate);
    le32(wave, rate);
    le16(wave, 1);
    le16(wave, 8);
    wave += "data";
    le32(wave, samples);
    wave.append(samples, static_cast<char>(0x80));
    return wave;
}

} // namespace cloudsim
