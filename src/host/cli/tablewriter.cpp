#include "tablewriter.h"

TableWriter::TableWriter(QStringList header)
{
    if (!header.isEmpty())
        mRows << header;
}

void TableWriter::addRow(QStringList const& cells)
{
    mRows << cells;
}

QString TableWriter::text() const
{
    QVector<int> widths;
    for (auto const& row : mRows) {
        for (int i = 0; i < row.size(); ++i) {
            if (widths.size() <= i)
                widths << 0;
            widths[i] = qMax(widths[i], row[i].size());
        }
    }
    QString text;
    for (auto const& row : mRows) {
        QString line;
        for (int i = 0; i < row.size(); ++i)
            line += i + 1 < row.size() ? row[i].leftJustified(widths[i] + 2) : row[i];
        text += line + QLatin1Char('\n');
    }
    return text;
}

QString elide(QString const& text, int width)
{
    QString flat = text;
    flat.replace(QLatin1Char('\n'), QLatin1Char(' '));
    if (flat.size() <= width)
        return flat;
    int const head = (width - 1) / 2;
    return flat.left(head) + QChar(0x2026) + flat.right(width - 1 - head);
}
