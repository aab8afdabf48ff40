#include "texts/ortografia.h"

#include "platform/disco/shell.h"
#include "platform/elaboratore/elaboratore.h"
#include "platform/finestre/messaggi.h"

#include <QPlainTextEdit>

#include <stdexcept>

namespace modTarvola
{

namespace
{

constexpr qsizetype lunghezzaZona = 512;

// Chiude documento e programma comunque vada, come chi usa un elaboratore altrui deve fare.
class InUso
{
public:
    elaboratore::Applicazione word;
    InUso() = default;
    ~InUso()
    {
        word.ActiveDocument_Close();
        word.Quit();
    }
    InUso(const InUso &) = delete;
    InUso &operator=(const InUso &) = delete;
};

QString controllato(const QString &testo)
{
    InUso uso;
    uso.word.Documents_Add();
    uso.word.Selection_TypeText(testo);
    uso.word.Visible = false;
    uso.word.Options.IgnoreUppercase = false;
    uso.word.ActiveDocument_CheckGrammar();
    uso.word.Selection_WholeStory();
    return uso.word.Selection_Text();
}

} // namespace

bool WordTrovato(QWidget *sopra)
{
    elaboratore::registra();
    const QString programma = shell::NomeFileDaPercorso(PercorsoProgramma(QStringLiteral(".doc")));
    if (programma.contains(QStringLiteral("WinWord"), Qt::CaseInsensitive))
        return true;
    messaggi::avvisa(sopra, QStringLiteral("Impossibile trovare Word"));
    return false;
}

QString testoDi(const QPlainTextEdit &casella)
{
    QString testo = casella.document()->toRawText();
    for (const QChar fineRiga : {QChar(QChar::ParagraphSeparator), QChar(QChar::LineSeparator)})
        testo.replace(fineRiga, u'\n');
    return testo;
}

void ControlloOrtografico(QPlainTextEdit &casella)
{
    if (!WordTrovato(&casella))
        return;
    const QString testo = testoDi(casella);
    QString corretto;
    try {
        corretto = controllato(testo);
    } catch (const std::exception &) {
        // L'elaboratore si è guastato: il testo resta com'era e non si dice nulla.
        return;
    }
    if (corretto == testo)
        return;
    // Come una sola modifica, che si può annullare.
    QTextCursor tutto(casella.document());
    tutto.select(QTextCursor::Document);
    tutto.insertText(corretto);
}

QString PercorsoProgramma(const QString &estensione)
{
    using namespace registro;
    QString classe;
    if (LeggiValoreRegistro(Radice::HKEY_CLASSES_ROOT, estensione, classe) != ERROR_SUCCESS)
        return QStringLiteral("False");
    QString programma;
    if (LeggiValoreRegistro(Radice::HKEY_CLASSES_ROOT,
                            classe + QStringLiteral("\\Shell\\Open\\Command"),
                            programma) != ERROR_SUCCESS)
        return {};
    const QString fine = QStringLiteral(".Exe");
    const qsizetype posto = programma.indexOf(fine, 0, Qt::CaseInsensitive);
    if (posto >= 0)
        programma.truncate(posto + fine.size());
    if (programma.startsWith(u'"'))
        programma.remove(0, 1);
    return programma;
}

long LeggiValoreRegistro(registro::Radice radice, const QString &nome, QString &valore)
{
    using namespace registro;
    valore.clear();
    Chiave chiave;
    const long esito = RegOpenKeyEx(radice, nome, KEY_READ, chiave);
    if (esito != ERROR_SUCCESS)
        return esito;
    QString zona(lunghezzaZona, QChar(u'\0'));
    if (RegQueryValueEx(chiave, zona) == ERROR_SUCCESS)
        valore = TroncaAlNul(zona);
    RegCloseKey(chiave);
    return ERROR_SUCCESS;
}

QString TroncaAlNul(const QString &testo)
{
    return testo.left(testo.indexOf(QChar(u'\0')));
}

} // namespace modTarvola
