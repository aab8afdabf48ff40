#include "app/menu.h"

#include "app/storia.h"
#include "app/ultimi.h"
#include "contesto/comandi.h"
#include "platform/finestre/testo_semplice.h"

#include <QAction>

namespace
{

constexpr const char *riapri = "file.riapri";
constexpr const char *continua = "file.continua";

template <class Voce>
struct Riga {
    Voce voce;
    QString testo;
    QKeySequence tasto = {};
    // L'id di un comando nostro, che ne dice nome e tasto.
    QString id = {};
};

template <class Voce>
QMenu *menu(QWidget *finestra, const QString &titolo, const std::vector<Riga<Voce>> &righe,
            const std::function<void(Voce)> &comando)
{
    auto *nuovo = new QMenu(titolo, finestra);
    for (const Riga<Voce> &riga : righe) {
        QAction *azione = nuovo->addAction(riga.testo);
        azione->setShortcut(riga.tasto);
        azione->setObjectName(riga.id);
        if (!riga.id.isEmpty())
            comandi::lega(azione, riga.id);
        QObject::connect(azione, &QAction::triggered, finestra,
                         [comando, voce = riga.voce] { comando(voce); });
    }
    return nuovo;
}

} // namespace

MenuComuni::MenuComuni(QWidget *finestra, const Comandi &comandi)
    : FileItem(menu<VoceFile>(finestra, QStringLiteral("&File"),
                              {{VoceFile::Apri, QStringLiteral("Apri"), QKeySequence::Open},
                               {VoceFile::Nuovo, QStringLiteral("Nuovo"), QKeySequence::New},
                               {VoceFile::Compatta, QStringLiteral("Compatta e ripristina")},
                               {VoceFile::BackUp, QStringLiteral("Back up"), Qt::CTRL | Qt::Key_B},
                               {VoceFile::Recupera, QStringLiteral("Recupera")},
                               {VoceFile::Riapri, {}, {}, QString::fromUtf8(riapri)},
                               {VoceFile::Bozze, {}, {}, QStringLiteral("file.bozze")},
                               {VoceFile::Continua, {}, {}, QString::fromUtf8(continua)}},
                              comandi.file)),
      FinestreItem(menu<VoceFinestre>(
          finestra, QStringLiteral("&Finestre"),
          {{VoceFinestre::InVerticale, QStringLiteral("Affianca in verticale")},
           {VoceFinestre::InOrizzontale, QStringLiteral("Affianca in orizzontale")},
           {VoceFinestre::Cascata, QStringLiteral("Cascata")},
           {VoceFinestre::Mostra, QStringLiteral("Mostra")}},
          comandi.finestre)),
      AiutoItem(menu<VoceAiuto>(finestra, QStringLiteral("&Aiuto"),
                                {{VoceAiuto::Manuale, QStringLiteral("Manuale"), Qt::Key_F1},
                                 {VoceAiuto::HomePage, QStringLiteral("Home page")},
                                 {VoceAiuto::Scrivi, QStringLiteral("Scrivi a Tarvola")}},
                                comandi.aiuto)),
      m_ultimo(comandi.ultimo)
{
    ModificaItem = new MenuModifica(finestra);
    FileItem->insertSeparator(voce(riapri));
    // Il percorso degli ultimi file si legge nel suggerimento.
    FileItem->setToolTipsVisible(true);
    QObject::connect(FileItem, &QMenu::aboutToShow, finestra, [this] {
        offreContinua();
        elencaUltimi();
    });
    offreRiapertura(false);
    offreContinua();
}

QAction *MenuComuni::voce(const char *id) const
{
    return FileItem->findChild<QAction *>(QString::fromUtf8(id));
}

void MenuComuni::offreRiapertura(bool si) const
{
    voce(riapri)->setEnabled(si);
}

void MenuComuni::offreContinua() const
{
    voce(continua)->setEnabled(!ultimi::posto().percorso.isEmpty());
}

// Dopo tutte le voci, e ogni volta da capo: un altro programma può averne aperti.
void MenuComuni::elencaUltimi() const
{
    const QList<QAction *> tutte = FileItem->actions();
    for (qsizetype i = tutte.indexOf(voce(continua)) + 1; i < tutte.size(); ++i)
        delete tutte.at(i);
    const QStringList percorsi = ultimi::file();
    const QStringList nomi = ultimi::nomi(percorsi);
    if (!percorsi.isEmpty())
        FileItem->addSeparator();
    for (qsizetype i = 0; i < percorsi.size(); ++i) {
        const QString &percorso = percorsi.at(i);
        QAction *azione = FileItem->addAction(QStringLiteral("&%1 %2").arg(
            QString::number(i + 1), testo_semplice::voceDi(nomi.at(i))));
        azione->setToolTip(percorso);
        azione->setStatusTip(percorso);
        QObject::connect(azione, &QAction::triggered, FileItem,
                         [apre = m_ultimo, percorso] { apre(percorso); });
    }
}

QList<QMenu *> MenuComuni::barra(const QList<QMenu *> &propri) const
{
    if (propri.isEmpty())
        return {FileItem, AiutoItem};
    return QList<QMenu *>{FileItem} + propri +
           QList<QMenu *>{FinestreItem, AiutoItem, ModificaItem};
}
