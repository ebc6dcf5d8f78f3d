#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

// Left-aligned columns, two spaces apart; the last column is not padded.
class TableWriter
{
public:
    explicit TableWriter(QStringList header = {});
    void addRow(QStringList const& cells);
    QString text() const;

private:
    QVector<QStringList> mRows;
};

// Cuts the middle out of text longer than width, so that both ends stay.
QString elide(QString const& text, int width);
