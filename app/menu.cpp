#include "app/menu.h"

#include "app/storia.h"
#include "contesto/comandi.h"

#include <QAction>

namespace
{

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
                               {VoceFile::Riapri, {}, {}, QStringLiteral("file.riapri")}},
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
                                comandi.aiuto))
{
    ModificaItem = new MenuModifica(finestra);
    FileItem->insertSeparator(FileItem->actions().constLast());
    offreRiapertura(false);
}

void MenuComuni::offreRiapertura(bool si) const
{
    FileItem->actions().constLast()->setEnabled(si);
}

QList<QMenu *> MenuComuni::barra(const QList<QMenu *> &propri) const
{
    if (propri.isEmpty())
        return {FileItem, AiutoItem};
    return QList<QMenu *>{FileItem} + propri +
           QList<QMenu *>{FinestreItem, AiutoItem, ModificaItem};
}
