#pragma once

#include <QList>
#include <QMenu>

#include <functional>

// Le voci dei menu comuni a tutte le finestre, nell'ordine in cui vi stanno.
enum class VoceFile { Apri = 1, Nuovo, Compatta, BackUp, Recupera, Riapri, Bozze, Continua };
enum class VoceFinestre { InVerticale = 1, InOrizzontale, Cascata, Mostra };
enum class VoceAiuto { Manuale = 1, HomePage, Scrivi };

// I menu File, Finestre, Aiuto e Modifica: scritti una volta, stanno nella barra qualunque finestra
// sia attiva, con quelli suoi in mezzo.
class MenuComuni
{
public:
    // Chi compie la voce scelta.
    struct Comandi {
        std::function<void(VoceFile)> file;
        std::function<void(VoceFinestre)> finestre;
        std::function<void(VoceAiuto)> aiuto;
        // Apre uno degli ultimi file.
        std::function<void(const QString &percorso)> ultimo;
    };
    MenuComuni(QWidget *finestra, const Comandi &comandi);

    // I menu della barra nell'ordine. `propri` sono quelli della finestra attiva; senza, non c'è
    // neppure Finestre, né Modifica.
    QList<QMenu *> barra(const QList<QMenu *> &propri) const;
    // Accende "Riapri gli elenchi chiusi" quando ce ne sono.
    void offreRiapertura(bool si) const;
    // Accende "Continua" se c'è da che cosa.
    void offreContinua() const;

private:
    QAction *voce(const char *id) const;
    void elencaUltimi() const;

    QMenu *FileItem;
    QMenu *FinestreItem;
    QMenu *AiutoItem;
    QMenu *ModificaItem;
    std::function<void(const QString &)> m_ultimo;
};
