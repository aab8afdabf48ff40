#pragma once

#include "platform/motore/ado.h"

#include <QWidget>

#include <functional>

// I comandi del menu File sugli archivi.
class ArchiviFile
{
public:
    // `apreArchivi` mostra gli archivi del file corrente; `chiudeFinestre` chiude i visualizzatori
    // che leggono da una connessione; falso se uno deve restare aperto.
    ArchiviFile(QWidget *finestra, std::function<void()> apreArchivi,
                std::function<bool(const ado::Connection *)> chiudeFinestre);

    void apre();
    void nuovo();
    // Apre l'archivio, lo rende corrente e ne mostra gli archivi; un guasto diventa un messaggio.
    void apreCorrente(const QString &percorso);
    // Apre l'archivio, lo rende corrente e fa entrare chi trascrive; `operatore` è chi si aspetta.
    // Falso se non si apre: il motivo è già detto.
    bool entra(const QString &percorso, const QString &operatore = {});

    // Fa scegliere un archivio che esiste; vuoto se non se ne sceglie nessuno.
    QString sceglie(const QString &titolo) const;
    // Chiude il file se è aperto: -1 non lo era, -2 l'utente lo tiene aperto, altrimenti il posto
    // della connessione chiusa.
    long ChiudiSeInUso(const QString &percorso);
    // Avverte che il file sarà spostato nel Cestino; vero se si procede.
    bool consenteLoSpostamento(const QString &percorso) const;

private:
    // Chiude il file, se è aperto, perché se ne possa prendere il posto; falso se non si vuole.
    bool libera(const QString &percorso);
    // Mette al posto dell'archivio una copia del modello e dice dove sta ora il vecchio, oppure
    // perché non si è potuto: allora nulla è cambiato.
    bool rinnova(const QString &modello, const QString &percorso);

    QWidget *m_finestra;
    std::function<void()> m_apreArchivi;
    std::function<bool(const ado::Connection *)> m_chiudeFinestre;
};
