#pragma once

#include <QString>
#include <QVariant>

#include <functional>

class QHeaderView;
class QWidget;

// Come l'utente ha lasciato le finestre: misure, posto, colonne. Sta in un file dei dati
// dell'utente; se il file manca o non si legge ogni finestra ha le misure sue.
namespace memoria
{

// Da qui in poi si ricorda nel file dato; con un percorso vuoto non si ricorda nulla, come prima
// della prima chiamata.
void usaFile(const QString &percorso);
// Il file dell'utente: "finestre.ini" nella cartella dei suoi dati.
QString fileDellUtente();

// Un valore ricordato; non valido se non c'è.
QVariant valore(const QString &chiave);
void ricorda(const QString &chiave, const QVariant &valore);
void dimentica(const QString &chiave);

// Rende alla finestra misure e posto che aveva, dentro lo schermo che c'è ora, e quando si chiude
// li ricorda. Da chiamare a finestra costruita, prima di mostrarla.
void ricordaFinestra(QWidget *finestra, const QString &nome);
// Lo stesso per le larghezze delle colonne, che si ricordano appena l'utente ne cambia una. Quelle
// di un elenco con un altro numero di colonne non valgono.
void ricordaColonne(QHeaderView *colonne, const QString &nome);
// Dà a ogni colonna la larghezza che il programma sceglie, in punti; non si ricorda, e non tocca
// quelle che l'utente ha scelto.
void adattaColonne(QHeaderView *colonne, const std::function<int(int)> &larghezza);

} // namespace memoria
