#pragma once

#include "platform/elaboratore/registro.h"

#include <QString>

class QPlainTextEdit;
class QWidget;

// Il controllo ortografico dei testi, affidato all'elaboratore registrato per i documenti.
namespace modTarvola
{

// Il testo della casella com'è: gli spazi che non vanno a capo restano tali.
QString testoDi(const QPlainTextEdit &casella);

// Vero se l'elaboratore c'è; se non c'è lo dice.
bool WordTrovato(QWidget *sopra);
// Controlla il testo della casella e vi rimette quello corretto. Un guasto dell'elaboratore lascia
// il testo com'è, senza messaggi.
void ControlloOrtografico(QPlainTextEdit &casella);

// Il programma registrato per un'estensione (".doc"): "False" se l'estensione non è registrata,
// vuoto se la sua classe non ha un comando.
QString PercorsoProgramma(const QString &estensione);
// Mette in `valore` il valore senza nome della chiave `nome`, vuoto se non si può leggere o non sta
// in 512 caratteri. Rende 0, o il codice d'errore se la chiave non si apre.
long LeggiValoreRegistro(registro::Radice radice, const QString &nome, QString &valore);
// Il testo fino al primo NUL.
QString TroncaAlNul(const QString &testo);

} // namespace modTarvola
