#pragma once

#include <QList>
#include <QObject>
#include <QString>

namespace ado
{
class Connection;
}

// Ciò che cambia negli archivi, detto a chi lo mostra o lo tiene da parte.
namespace modTarvola
{

// Che cosa è accaduto a un record. Di un'eliminazione si dice il record da cui è partita; delle
// altre tabelle che hanno perso righe, il nome senza codice.
struct Cambiamento {
    enum Specie { Nuovo, Cambiato, Eliminato };
    QString tabella;
    QString codice;
    Specie specie = Cambiato;
};

// Un lavoro confermato: il nome con cui chi lavora lo conosce, il file e le righe cambiate.
struct Annuncio {
    QString nome;
    QString archivio;
    // Vale finché dura il segnale; chi lo riceve più tardi riconosce il file dal percorso.
    ado::Connection *connessione = nullptr;
    QList<Cambiamento> cambiamenti;
    // Un passo annullato o ripetuto: i record che tornano stanno al loro posto, non in fondo.
    bool ripresa = false;

    // Vero se a righe della tabella è accaduto questo.
    bool dice(Cambiamento::Specie specie, const QString &tabella) const;
};

// Annuncia una volta sola ogni lavoro confermato, nel filo che lo ha confermato.
class Annunci : public QObject
{
    Q_OBJECT

signals:
    void avvenuto(const modTarvola::Annuncio &annuncio);

private:
    friend Annunci &annunci();
    Annunci() = default;
};

Annunci &annunci();

} // namespace modTarvola
