#pragma once

#include <QStringList>
#include <QWidget>

#include <functional>

// L'unica porta dei messaggi all'utente. Il titolo è quello dell'applicazione, il testo è piano.
namespace messaggi
{

// Un messaggio col solo "OK".
void avvisa(QWidget *sopra, const QString &testo);
// Come si presenta una domanda: se ne ha il segno, e quale risposta è la predefinita.
enum class Domanda { Semplice, ColSegno, PropostoNo };
// Una domanda con "Sì" e "No", di cui il primo è il predefinito dove non è detto altro. Chiudere è
// "No".
bool chiede(QWidget *sopra, const QString &testo, Domanda domanda = Domanda::Semplice);
// Un avvertimento grave con "Riprova" e "Annulla"; "Annulla" è il predefinito. Vero se si procede.
bool avverte(QWidget *sopra, const QString &testo);
// Una domanda con "Salva", "Non salvare" e "Annulla"; chiudere è "Annulla".
enum Scelta { Salva, Abbandona, Annulla };
Scelta salva(QWidget *sopra, const QString &testo);
// Una domanda con le risposte date e "Annulla", che è la predefinita. Rende il posto della
// risposta, -1 se è "Annulla".
int sceglie(QWidget *sopra, const QString &testo, const QStringList &risposte);
// Il messaggio di un'operazione che il motore ha rifiutato.
void riferisceErrore(QWidget *sopra, const QString &motivo);

// Ogni funzione che il toolkit chiama gira qui dentro: un guasto diventa un messaggio e non
// attraversa mai il toolkit. Rende vero se la funzione è arrivata in fondo.
bool protetto(QWidget *sopra, const std::function<void()> &funzione);
// Vero mentre una di quelle funzioni non è ancora finita.
bool inCorso();

} // namespace messaggi
