#include "media.h"

#include <QCryptographicHash>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace cloudsim {

// "cover-100" is the 100 pixel copy of "cover", which is 600 pixels: the same
// picture, so that a user interface that picks a size sees the cover it expects.
std::string coverImage(QString const& name)
{
    static QRegularExpression const sized(QStringLiteral("^(.+)-(\\d{2,4})$"));
    QRegularExpressionMatch const match = sized.match(name);
    QString const cover = match.hasMatch() ? match.captured(1) : name;
    int const size = match.hasMatch() ? match.captured(2).toInt() : 600;
    QByteArray const hash = QCryptographicHash::hash(cover.toUtf8(), QCryptographicHash::Md5).toHex();
    QString const svg = QString("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%1\" height=\"%1\" "
                                "viewBox=\"0 0 300 300\"><rect width=\"300\" height=\"300\" fill=\"#%2\"/>"
                                "<text x=\"150\" y=\"160\" font-size=\"24\" text-anchor=\"middle\" "
                                "fill=\"white\">%3</text></svg>")
                            .arg(size)
                            .arg(QString::fromLatin1(hash.left(6)), cover.toHtmlEscaped());
    return svg.toStdString();
}

// 8 kHz, 8 bits, mono: the smallest wave a player takes without question.
// Each name sounds a tone of its own, so that a person hears which stream
// plays and that one stream gave way to the next; the tone swells in and
// out so that its ends don't click.
std::string toneWave(QString const& name, int seconds)
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

    QByteArray const hash = QCryptographicHash::hash(name.toUtf8(), QCryptographicHash::Md5);
    // Two octaves from 220 Hz, in semitones: tones that are easy to tell apart.
    double const frequency = 220.0 * std::pow(2.0, (static_cast<quint8>(hash.at(0)) % 25) / 12.0);
    double const swell = 0.05 * rate;
    wave.reserve(wave.size() + samples);
    for (quint32 i = 0; i < samples; ++i) {
        double const edge = std::min({1.0, i / swell, (samples - i) / swell});
        double const level = 0.3 * edge * std::sin(2.0 * M_PI * frequency * i / rate);
        wave.push_back(static_cast<char>(static_cast<quint8>(128 + std::lround(127 * level))));
    }
    return wave;
}

} // namespace cloudsim
