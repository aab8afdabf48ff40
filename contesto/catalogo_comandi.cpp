#include "contesto/comandi.h"

#include <QCoreApplication>

#include <algorithm>

// Il catalogo dei comandi nostri, e i tasti che non si possono dare a nessuno di loro.

namespace comandi
{

namespace
{

// Una lettera, o una cifra, o un segno: senza altri tasti si scrive.
bool siScrive(Qt::Key tasto)
{
    return tasto >= Qt::Key_Space && tasto < Qt::Key_Escape;
}

constexpr QKeySequence::StandardKey usiDelleCaselle[] = {
    QKeySequence::Copy,
    QKeySequence::Cut,
    QKeySequence::Paste,
    QKeySequence::Undo,
    QKeySequence::Redo,
    QKeySequence::SelectAll,
    QKeySequence::Deselect,
    QKeySequence::Delete,
    QKeySequence::Backspace,
    QKeySequence::DeleteStartOfWord,
    QKeySequence::DeleteEndOfWord,
    QKeySequence::DeleteEndOfLine,
    QKeySequence::DeleteCompleteLine,
    QKeySequence::InsertLineSeparator,
    QKeySequence::InsertParagraphSeparator,
    QKeySequence::MoveToNextChar,
    QKeySequence::MoveToPreviousChar,
    QKeySequence::MoveToNextWord,
    QKeySequence::MoveToPreviousWord,
    QKeySequence::MoveToNextLine,
    QKeySequence::MoveToPreviousLine,
    QKeySequence::MoveToStartOfLine,
    QKeySequence::MoveToEndOfLine,
    QKeySequence::MoveToStartOfBlock,
    QKeySequence::MoveToEndOfBlock,
    QKeySequence::MoveToStartOfDocument,
    QKeySequence::MoveToEndOfDocument,
    QKeySequence::SelectNextChar,
    QKeySequence::SelectPreviousChar,
    QKeySequence::SelectNextWord,
    QKeySequence::SelectPreviousWord,
    QKeySequence::SelectNextLine,
    QKeySequence::SelectPreviousLine,
    QKeySequence::SelectStartOfLine,
    QKeySequence::SelectEndOfLine,
    QKeySequence::SelectStartOfBlock,
    QKeySequence::SelectEndOfBlock,
    QKeySequence::SelectStartOfDocument,
    QKeySequence::SelectEndOfDocument,
};

// I tasti che il toolkit dà alle caselle di testo, sul sistema in cui si è.
bool delleCaselle(const QKeySequence &tasto)
{
    return std::any_of(std::begin(usiDelleCaselle), std::end(usiDelleCaselle),
                       [&](QKeySequence::StandardKey uso) {
                           return QKeySequence::keyBindings(uso).contains(tasto);
                       });
}

struct Fisso {
    unsigned dove;
    QKeySequence tasto;
    const char *uso;
};

// I comandi che hanno il loro tasto una volta per tutte.
const std::vector<Fisso> &fissi()
{
    static const std::vector<Fisso> tutti{
        {Principale, QKeySequence::Open, "Apri, del menu File"},
        {Principale, QKeySequence::New, "Nuovo, del menu File"},
        {Principale, Qt::CTRL | Qt::Key_B, "Back up, del menu File"},
        {Dappertutto, Qt::Key_F1, "il manuale"},
        {Dappertutto, Qt::Key_F10, "i menu"},
        {Dappertutto, Qt::SHIFT | Qt::Key_F10, "il menu della riga o della casella"},
        {Dappertutto, Qt::Key_Menu, "il menu della riga o della casella"},
        {Dappertutto, Qt::CTRL | Qt::Key_Tab, "passare alla finestra accanto"},
        {Dappertutto, Qt::CTRL | Qt::SHIFT | Qt::Key_Tab, "passare alla finestra accanto"},
        {Dappertutto, Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab, "passare alla finestra accanto"},
        {Principale, Qt::CTRL | Qt::Key_F6, "passare alla finestra accanto"},
        {Principale, Qt::CTRL | Qt::SHIFT | Qt::Key_F6, "passare alla finestra accanto"},
        {Principale, Qt::CTRL | Qt::Key_F4, "chiudere la finestra"},
        {Principale | Testo, Qt::CTRL | Qt::Key_W, "chiudere la finestra"},
        {Dappertutto, Qt::ALT | Qt::Key_F4, "chiudere la finestra"},
        {Elenchi, Qt::CTRL | Qt::Key_Return, "Seleziona, in un elenco"},
        {Elenchi, Qt::CTRL | Qt::Key_Enter, "Seleziona, in un elenco"},
        {Elenchi | Record, Qt::Key_Insert, "Nuovo"},
        {Elenchi | Record, Qt::Key_F5, "Aggiorna"},
        {Elenchi | Record, Qt::Key_Delete, "Elimina"},
        {Elenchi, QKeySequence::Copy, "copiare la riga di un elenco"},
        {Elenchi, QKeySequence::SelectAll, "scegliere le righe di un elenco"},
        {Elenchi, Qt::CTRL | Qt::Key_Home, "muoversi in un elenco"},
        {Elenchi, Qt::CTRL | Qt::Key_End, "muoversi in un elenco"},
        {Record | Testo, QKeySequence::Save, "Salva"},
        {Testo, Qt::Key_F7, "Controlla, in un testo"},
        // La proposta sotto una casella della scheda.
        {Scheda, Qt::SHIFT | Qt::Key_Delete, "non proporre più"},
    };
    return tutti;
}

QString tr(const char *testo)
{
    return QCoreApplication::translate("comandi", testo);
}

// Ciò che un tasto da solo fa già in ogni finestra, o con Maiusc, o con Alt.
QString delleFinestre(QKeyCombination uno)
{
    const Qt::Key tasto = uno.key();
    const auto modi = uno.keyboardModifiers();
    const bool soloMaiuscole = (modi & ~Qt::ShiftModifier) == 0;
    if (tasto == Qt::Key_Escape || tasto == Qt::Key_Tab || tasto == Qt::Key_Backtab)
        return tr("serve a chiudere e a passare da una casella all'altra");
    if (soloMaiuscole && siScrive(tasto))
        return tr("serve a scrivere");
    if (modi == Qt::AltModifier && siScrive(tasto))
        return tr("Alt con una lettera apre i menu e preme i bottoni");
    const bool muove = tasto >= Qt::Key_Home && tasto <= Qt::Key_PageDown;
    if (soloMaiuscole &&
        (muove || tasto == Qt::Key_Return || tasto == Qt::Key_Enter || tasto == Qt::Key_Backspace))
        return tr("serve a muoversi e a scegliere");
    return {};
}

struct Catalogo {
    const std::vector<Comando> tutti{
        {QStringLiteral("file.riapri"), tr("Riapri gli elenchi chiusi"), Principale,
         Qt::CTRL | Qt::SHIFT | Qt::Key_T},
        {QStringLiteral("file.bozze"), tr("Ultime bozze…"), Principale},
        {QStringLiteral("file.continua"), tr("&Continua"), Principale, Qt::Key_F9},
        {QStringLiteral("modifica.annulla"), tr("&Annulla"), Elenchi, Qt::CTRL | Qt::Key_Z},
        {QStringLiteral("modifica.ripeti"), tr("&Ripeti"), Elenchi,
         Qt::CTRL | Qt::SHIFT | Qt::Key_Z},
        {QStringLiteral("modifica.storia"), tr("&Storia…"), Principale},
        {QStringLiteral("elenco.trascrivi"), tr("Trascrivi"), Registri, Qt::Key_F4},
        {QStringLiteral("elenco.scheda"), tr("Scheda"), Voci, Qt::Key_F4},
        {QStringLiteral("elenco.nuovaScheda"), tr("Nuova scheda"), Voci, Qt::SHIFT | Qt::Key_F4},
        {QStringLiteral("elenco.schedaDellAtto"), tr("Scheda dell'atto"), AltriElenchi, Qt::Key_F4},
        {QStringLiteral("scheda.salva"), tr("&Salva"), Scheda, Qt::CTRL | Qt::Key_S},
        {QStringLiteral("scheda.salvaENuovo"), tr("Salva e &nuovo atto"), Scheda,
         Qt::CTRL | Qt::Key_Return},
        {QStringLiteral("scheda.nuovo"), tr("Nuovo &atto"), Scheda, Qt::SHIFT | Qt::Key_F4},
        {QStringLiteral("scheda.precedente"), tr("Atto &precedente"), Scheda, Qt::Key_F7},
        {QStringLiteral("scheda.successivo"), tr("Atto s&uccessivo"), Scheda, Qt::Key_F8},
        {QStringLiteral("scheda.comePrimaCasella"), tr("Come nell'atto prima: questa &casella"),
         Scheda, Qt::Key_F2},
        {QStringLiteral("scheda.comePrimaPersona"), tr("Come nell'atto prima: questa p&ersona"),
         Scheda, Qt::SHIFT | Qt::Key_F2},
        {QStringLiteral("scheda.altraPersona"), tr("Un'altra pe&rsona"), Scheda, Qt::Key_F3},
        {QStringLiteral("scheda.togliPersona"), tr("&Togli la persona"), Scheda,
         Qt::SHIFT | Qt::Key_F3},
        {QStringLiteral("scheda.spegneProposte"),
         tr("Spegni o accendi le proposte in questa case&lla"), Scheda, Qt::Key_F6},
        {QStringLiteral("scheda.proposteTolte"), tr("Pr&oposte tolte…"), Scheda,
         Qt::SHIFT | Qt::Key_F6},
        {QStringLiteral("scheda.campi"), tr("Ca&mpi…"), Scheda, Qt::SHIFT | Qt::Key_F9},
        {QStringLiteral("scheda.tasti"), tr("Tast&i…"), Scheda},
        {QStringLiteral("scheda.caselleDalTesto"), tr("Caselle dal &testo"), Scheda, Qt::Key_F11},
        {QStringLiteral("scheda.confermaCaselle"), tr("Con&ferma le caselle lette nel testo"),
         Scheda, Qt::SHIFT | Qt::Key_F11},
        {QStringLiteral("testo.distende"), tr("Distendi l'a&bbreviazione"), Scheda | Testo,
         Qt::Key_F12},
        {QStringLiteral("scheda.abbreviazioni"), tr("Abbre&viazioni…"), Scheda},
        {QStringLiteral("scheda.togliLette"), tr("To&gli le caselle lette nel testo"), Scheda},
    };
};

} // namespace

const std::vector<Comando> &catalogo()
{
    static const Catalogo solo;
    return solo.tutti;
}

QString impedimento(const QKeySequence &tasto, unsigned dove)
{
    if (tasto.count() != 1)
        return tr("si può dare un tasto solo, con o senza Ctrl, Alt e Maiusc");
    if (tasto[0].key() == Qt::Key_unknown || tasto[0].key() == 0)
        return tr("non è un tasto che si possa dare");
    const QString motivo = delleFinestre(tasto[0]);
    if (!motivo.isEmpty())
        return motivo;
    const auto fisso = std::find_if(fissi().begin(), fissi().end(), [&](const Fisso &uno) {
        return (uno.dove & dove) != 0 && uno.tasto == tasto;
    });
    if (fisso != fissi().end())
        return tr("è già di: %1").arg(tr(fisso->uso));
    if ((dove & Caselle) != 0 && delleCaselle(tasto))
        return tr("serve a scrivere nelle caselle di testo");
    return {};
}

QString Comando::piano() const
{
    QString senza = nome;
    return senza.remove(u'&').remove(QStringLiteral("…"));
}

QString Comando::finestre() const
{
    static const std::pair<unsigned, const char *> nomi[] = {
        {Dappertutto, "Ogni finestra"},
        {Principale, "Finestra principale"},
        {Elenchi, "Elenchi"},
        {Caselle, "Schede, record e testi"},
        {Archivi, "Elenco di archivi"},
        {Registri, "Elenco di registri"},
        {Voci, "Elenco di voci"},
        {AltriElenchi, "Altri elenchi"},
        {Scheda, "Scheda"},
        {Record, "Finestra di un record"},
        {Testo, "Testo"},
    };
    QStringList parti;
    unsigned manca = dove;
    for (const auto &[quali, come] : nomi) {
        if ((manca & quali) == quali) {
            parti.append(tr(come));
            manca &= ~quali;
        }
    }
    return parti.join(QStringLiteral(", "));
}

} // namespace comandi
