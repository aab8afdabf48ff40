#pragma once

#include "atti/fmScheda.h"
#include "browser/comandi_elenco.h"

#include <QMdiArea>

// Le pagine degli atti, aperte accanto agli elenchi.
class Schede
{
public:
    // `apreRecord` apre un record nel suo editore.
    Schede(QMdiArea *area, std::function<void(QMdiSubWindow *)> colloca,
           std::function<void(const fmScheda &, const QString &codice)> apreRecord);

    // I comandi che un elenco ha in più, secondo ciò che elenca.
    std::vector<ComandoElenco> comandi(const GenereElenco &genere);
    // Apre la pagina di un atto, o mostra quella che c'è già. Lancia ado::Errore se non si può.
    void apre(const ProprietaScheda &proprieta);
    // Riapre la pagina di una bozza, con ciò che vi era scritto; di un atto che non c'è più, come
    // uno nuovo del suo registro.
    void riprende(const bozze::Finestra &bozza, const QString &archivio, const QString &operatore);
    // Chiede alle pagine che lavorano sulla connessione, o a tutte se è nulla, se possono
    // chiudersi: chi ha qualcosa di scritto lo domanda. Falso se una deve restare.
    bool possonoChiudersi(const ado::Connection *connessione) const;
    QList<fmScheda *> aperte() const;
    // Porta davanti la pagina su un atto nuovo del registro, se c'è; falso se non c'è.
    bool mostraNuova(const QString &percorso, const QString &registro) const;

private:
    void apreNuova(fmTabella &elenco);
    fmScheda *pagina(const ProprietaScheda &proprieta);
    void apreDa(fmTabella &elenco, const QString &registro, const QString &voce);

    QMdiArea *m_area;
    std::function<void(QMdiSubWindow *)> m_colloca;
    std::function<void(const fmScheda &, const QString &)> m_apreRecord;
};
