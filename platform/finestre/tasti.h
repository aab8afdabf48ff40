#pragma once

#include <QKeySequence>
#include <QString>

class QAbstractButton;
class QToolBar;
class QWidget;

// I tasti e i nomi dei comandi, che chi usa il programma legge nei suggerimenti.
namespace tasti
{

// Il testo di un suggerimento col suo tasto, se ne ha uno: "Nuovo (Ins)".
QString conTasto(const QString &testo, const QKeySequence &tasto);
// Il tasto preme il bottone quando il fuoco è in `dove` o in ciò che contiene, e il suggerimento
// del bottone lo dice. Un bottone spento resta tale.
void assegna(QWidget *dove, const QKeySequence &tasto, QAbstractButton *bottone);

// Nome della barra e del bottone che, quando è stretta, ne mostra il resto.
void chiama(QToolBar *barra, const QString &nome);

} // namespace tasti
