#pragma once

#include <QString>

#include <functional>
#include <vector>

struct ComandoElenco;
struct GenereElenco;

// Le proprietà che chi apre un visualizzatore gli dà prima di mostrarlo.
struct ProprietaTabella {
    QString TipoTabella;
    QString Percorso;
    QString ArchivioLocale;
    QString RegistroLocale;
    QString VoceLocale;
    int Ordinamento = 0;
    QString VoceLocaleTabella;
    QString ConOperatore;
};

// Com'è un elenco aperto: quanto basta per riaprirlo uguale.
struct StatoTabella {
    // Con il segno dei dettagli in Ordinamento, come le darebbe chi lo apre.
    ProprietaTabella proprieta;
    // -1 se nessuna colonna dà l'ordine.
    int colonnaOrdine = -1;
    QString codiceCorrente;
};

// Ciò che il visualizzatore chiede alla finestra principale.
struct ServiziTabella {
    // Apre un altro visualizzatore; lancia ado::Errore se il suo elenco non si può leggere.
    std::function<void(const ProprietaTabella &)> apre;
    // I comandi che altri piani aggiungono a un genere di elenco, dopo i suoi; può mancare.
    std::function<std::vector<ComandoElenco>(const GenereElenco &)> altriComandi;
};
