#include "db/atto/vocabolario.h"

#include "platform/lingua/piegatura.h"

#include <algorithm>

namespace modTarvola
{

namespace
{

// I campi di una persona, poi quelli di un evento: i nomi e i soprannomi non si mescolano con i
// luoghi, né gli uni con gli altri. In fondo le parole dei nomi, una per una.
const QStringList campi{QStringLiteral("Nome"),         QStringLiteral("Cognome"),
                        QStringLiteral("Soprannome"),   QStringLiteral("Detto"),
                        QStringLiteral("Precisazione"), QStringLiteral("Età"),
                        QStringLiteral("Luogo"),        QStringLiteral("Indirizzo"),
                        QStringLiteral("Causa"),        QStringLiteral("Valore")};
constexpr size_t diPersona = 6;
constexpr size_t quantiCampi = 10;
constexpr size_t campoNome = 0;
constexpr size_t campoParole = quantiCampi;
const QString sesso = QStringLiteral("Sesso");

constexpr size_t mebi = 1024 * 1024;
// Nomi, cognomi e luoghi sono ciò che più si propone: a loro il più della memoria.
size_t limiteDi(size_t campo, Vocabolario::Ampiezza ampiezza)
{
    if (ampiezza == Vocabolario::Ampiezza::Registro)
        return mebi / 4;
    const bool molto = campo <= 1 || campo == diPersona;
    return molto ? 2 * mebi : mebi / 2;
}

char lettera(QByteArrayView testo)
{
    return testo.size() == 1 ? testo.front() : '\0';
}

QString colonne(size_t da, size_t a)
{
    QStringList nomi;
    for (size_t i = da; i < a; ++i)
        nomi.append(QStringLiteral("\"%1\"").arg(campi[static_cast<qsizetype>(i)]));
    return nomi.join(u',');
}

} // namespace

Vocabolario::Vocabolario(Ampiezza ampiezza)
{
    for (size_t i = 0; i <= quantiCampi; ++i)
        m_lessici.emplace_back(limiteDi(i, ampiezza));
}

const Lessico *Vocabolario::lessico(const QString &campo) const
{
    const qsizetype suo = campi.indexOf(campo);
    return suo < 0 ? nullptr : &m_lessici[static_cast<size_t>(suo)];
}

size_t Vocabolario::byte() const
{
    size_t somma = 0;
    for (const Lessico &uno : m_lessici)
        somma += uno.byte();
    return somma;
}

void Vocabolario::conta(size_t campo, QByteArrayView testo, quint32 recente, char suoSesso)
{
    m_lessici[campo].conta(testo, recente, suoSesso);
    if (campo != campoNome)
        return;
    for (qsizetype inizio = 0; inizio < testo.size();) {
        const qsizetype spazio = testo.indexOf(' ', inizio);
        const qsizetype fine = spazio < 0 ? testo.size() : spazio;
        m_lessici[campoParole].conta(testo.sliced(inizio, fine - inizio), recente);
        inizio = fine + 1;
    }
}

void Vocabolario::impara(const Atto &atto, bool corretto)
{
    m_recente += corretto ? 0 : 1;
    const auto impara = [this, corretto](const Campi &valori, size_t da, size_t a) {
        const char suo = lettera(testoDi(valori, sesso).toUtf8());
        for (size_t i = da; i < a; ++i) {
            const QByteArray testo = testoDi(valori, campi[static_cast<qsizetype>(i)]).toUtf8();
            if (!corretto || !m_lessici[i].ha(testo))
                conta(i, testo, m_recente, suo);
        }
    };
    const auto eventi = [&impara](const QList<EventoDiAtto> &tutti) {
        for (const EventoDiAtto &evento : tutti)
            impara(evento.campi, diPersona, quantiCampi);
    };
    for (const PersonaDiAtto &persona : atto.persone) {
        impara(persona.campi, 0, diPersona);
        eventi(persona.eventi);
    }
    for (const FamigliaDiAtto &famiglia : atto.famiglie)
        eventi(famiglia.eventi);
    for (Lessico &lessico : m_lessici)
        lessico.ordina();
}

QStringList proposte(std::span<const Vocabolario *const> strati, const QString &campo,
                     const QString &scritto, int quante)
{
    const qsizetype suo = campi.indexOf(campo);
    if (suo < 0)
        return {};
    const auto spazio = scritto.lastIndexOf(u' ');
    const bool aParole = static_cast<size_t>(suo) == campoNome && spazio > 0;
    const QByteArray cercato = italiano::piegato(scritto).toUtf8();
    const QByteArray ultima = italiano::piegato(scritto.sliced(spazio + 1)).toUtf8();
    QStringList trovate;
    const auto aggiunge = [&](const QString &testo) {
        if (testo != scritto.trimmed() && !trovate.contains(testo))
            trovate.append(testo);
    };
    for (const Vocabolario *strato : strati) {
        if (strato == nullptr || trovate.size() >= quante)
            continue;
        const auto abbastanza = static_cast<size_t>(quante) + 1;
        const auto intere = strato->m_lessici[static_cast<size_t>(suo)].cerca(cercato, abbastanza);
        for (const QString &testo : intere)
            aggiunge(testo);
        if (!aParole || trovate.size() >= quante)
            continue;
        const auto parole = strato->m_lessici[campoParole].cerca(ultima, abbastanza, true);
        for (const QString &parola : parole)
            aggiunge(scritto.first(spazio + 1) + parola);
    }
    return trovate.first(std::min<qsizetype>(quante, trovate.size()));
}

QString sessoDi(std::span<const Vocabolario *const> strati, const QString &nome)
{
    const QByteArray parola = italiano::piegato(nome).section(u' ', 0, 0).toUtf8();
    quint32 maschi = 0;
    quint32 femmine = 0;
    for (const Vocabolario *strato : strati) {
        if (strato == nullptr)
            continue;
        const auto [suoi, sue] = strato->lessico(campi[campoNome])->sessi(parola);
        maschi += suoi;
        femmine += sue;
    }
    constexpr quint32 quasiSempre = 10;
    if (maschi > femmine * quasiSempre)
        return QStringLiteral("M");
    return femmine > maschi * quasiSempre ? QStringLiteral("F") : QString();
}

// Legge in un filo a parte, su una connessione che non scrive e non aspetta.
class LetturaVocabolario
{
public:
    LetturaVocabolario(ado::Connection &connessione, const Prosegue &prosegue,
                       Vocabolario::Ampiezza ampiezza)
        : m_lettura(connessione, prosegue), m_letto(ampiezza)
    {
    }

    void registro(const QString &registro)
    {
        constexpr int attiAlPiu = 20000;
        QStringList atti;
        m_lettura.legge({QStringLiteral("SELECT Codice FROM Voci WHERE Registro = ? ORDER BY "
                                        "rowid DESC LIMIT ?"),
                         {registro, attiAlPiu},
                         {}},
                        [&atti](const ado::Riga &riga) { atti.append(riga.testo(0)); });
        const auto di = [this](const QString &atto, const QString &istruzione, bool persone) {
            m_lettura.legge({istruzione, {atto}, {}}, [this, persone](const ado::Riga &riga) {
                persone ? contaPersona(riga, 0) : contaEvento(riga, 0);
            });
        };
        const QString eventi = QStringLiteral("SELECT %1 FROM %2 CROSS JOIN Eventi ON "
                                              "IdProprietario = %2.Codice WHERE Voce = ?");
        for (const QString &atto : std::as_const(atti)) {
            di(atto,
               QStringLiteral("SELECT %1, Sesso FROM Individui WHERE Voce = ?")
                   .arg(colonne(0, diPersona)),
               true);
            for (const char *tabella : {"Individui", "Famiglie"})
                di(atto, eventi.arg(colonne(diPersona, quantiCampi), QString::fromLatin1(tabella)),
                   false);
        }
    }

    void archivio()
    {
        m_lettura.aPezzi(QStringLiteral("SELECT rowid, %1, Sesso FROM Individui WHERE rowid > ? "
                                        "ORDER BY rowid LIMIT ?")
                             .arg(colonne(0, diPersona)),
                         [this](const ado::Riga &riga) { contaPersona(riga, 1); });
        m_lettura.aPezzi(QStringLiteral("SELECT rowid, %1 FROM Eventi WHERE rowid > ? ORDER BY "
                                        "rowid LIMIT ?")
                             .arg(colonne(diPersona, quantiCampi)),
                         [this](const ado::Riga &riga) { contaEvento(riga, 1); });
    }

    Vocabolario finisce()
    {
        for (Lessico &lessico : m_letto.m_lessici)
            lessico.chiude();
        return std::move(m_letto);
    }

private:
    void contaPersona(const ado::Riga &riga, int prima)
    {
        const char suo = lettera(riga.byte(riga.colonne() - 1));
        for (int i = prima; i < riga.colonne() - 1; ++i)
            m_letto.conta(static_cast<size_t>(i - prima), riga.byte(i), 0, suo);
    }
    void contaEvento(const ado::Riga &riga, int prima)
    {
        for (int i = prima; i < riga.colonne(); ++i)
            m_letto.conta(diPersona + static_cast<size_t>(i - prima), riga.byte(i), 0, 0);
    }

    LetturaLenta m_lettura;
    Vocabolario m_letto;
};

Vocabolario leggeRegistro(ado::Connection &connessione, const QString &registro,
                          const Prosegue &prosegue)
{
    LetturaVocabolario lettura(connessione, prosegue, Vocabolario::Ampiezza::Registro);
    lettura.registro(registro);
    return lettura.finisce();
}

Vocabolario leggeArchivio(ado::Connection &connessione, const Prosegue &prosegue)
{
    LetturaVocabolario lettura(connessione, prosegue, Vocabolario::Ampiezza::Archivio);
    lettura.archivio();
    return lettura.finisce();
}

} // namespace modTarvola
