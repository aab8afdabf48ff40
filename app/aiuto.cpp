#include "app/aiuto.h"

#include "app/fmGuida.h"
#include "platform/disco/sistema.h"
#include "platform/finestre/desktop.h"

#include <QCoreApplication>
#include <QLocale>

namespace modTarvola
{

namespace
{

const QString paginaDelProgramma = QStringLiteral(TARVOLA_PAGINA);
const QString indirizzoAssistenza = QStringLiteral(TARVOLA_ASSISTENZA);
const QString paginaIniziale = QStringLiteral("htm/inizio.htm");
const QString aCapo = QStringLiteral("\r\n");

void scriveATarvola()
{
    const QString corpo = QStringLiteral("Tarvola versione ") +
                          QCoreApplication::applicationVersion() + aCapo + InfoSistema();
    ApriPostaElettronica(indirizzoAssistenza, QStringLiteral("Informazioni su Tarvola"), corpo, {},
                         {});
}

} // namespace

void ComandoAiuto(QWidget *sopra, VoceAiuto voce)
{
    switch (voce) {
    case VoceAiuto::Manuale:
        MostraGuida(sopra, paginaIniziale);
        break;
    case VoceAiuto::HomePage:
        desktop::apreCollegamento(paginaDelProgramma);
        break;
    case VoceAiuto::Scrivi:
        scriveATarvola();
        break;
    }
}

void MostraGuida(QWidget *sopra, const QString &pagina)
{
    mostraGuida(sopra, pagina);
}

QString InKilobyte(quint64 byte)
{
    QLocale italiano(QLocale::Italian, QLocale::Italy);
    italiano.setNumberOptions(QLocale::OmitGroupSeparator);
    // Dividere per una potenza di due non perde cifre, e la forma più breve le scrive tutte.
    return italiano.toString(static_cast<double>(byte) / 1024.0, 'f',
                             QLocale::FloatingPointShortest);
}

QString InfoSistema()
{
    const sistema::Memoria memoria = sistema::memoria();
    return sistema::nome() + aCapo + QStringLiteral("Memoria fisica disponibile (KB) : ") +
           InKilobyte(memoria.fisicaDisponibile) + aCapo +
           QStringLiteral("Memoria fisica totale (KB) : ") + InKilobyte(memoria.fisicaTotale) +
           aCapo + QStringLiteral("Memoria virtuale disponibile (KB) : ") +
           InKilobyte(memoria.virtualeDisponibile) + aCapo +
           QStringLiteral("Memoria virtuale totale (KB) : ") + InKilobyte(memoria.virtualeTotale) +
           aCapo;
}

QString CodificaACapo(const QString &testo)
{
    return QString(testo).replace(aCapo, QStringLiteral("%0D%0A"));
}

QString CollegamentoPosta(const QString &indirizzo, const QString &oggetto, const QString &corpo,
                          const QString &copia, const QString &copiaNascosta)
{
    QString domanda;
    const auto aggiunge = [&domanda](const QString &nome, const QString &valore) {
        if (!valore.isEmpty())
            domanda += nome + valore;
    };
    aggiunge(QStringLiteral("&Subject="), oggetto);
    aggiunge(QStringLiteral("&Body="), CodificaACapo(corpo));
    aggiunge(QStringLiteral("&CC="), copia);
    aggiunge(QStringLiteral("&BCC="), copiaNascosta);
    if (!domanda.isEmpty())
        domanda[0] = u'?';
    return QStringLiteral("mailto:") + indirizzo + domanda;
}

bool ApriPostaElettronica(const QString &indirizzo, const QString &oggetto, const QString &corpo,
                          const QString &copia, const QString &copiaNascosta)
{
    return desktop::apreCollegamento(
        CollegamentoPosta(indirizzo, oggetto, corpo, copia, copiaNascosta));
}

} // namespace modTarvola
