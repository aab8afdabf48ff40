#include "bench/serie.h"

#include "db/schema/generi.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <stdexcept>

using namespace modTarvola;

namespace serie
{

namespace
{

struct Persona {
    const char *nome;
    const char *etichetta;
    int ruolo; // 0: lo decide il sesso dell'altro
    const char *sesso;
    const char *figlio; // di chi è genitore
};

constexpr Persona persone[] = {
    {"battezzato", "Battezzato/a", 1, "", ""},
    {"padre", "Padre", Padre, "M", "battezzato defunto"},
    {"madre", "Madre", Madre, "F", "battezzato defunto"},
    {"padrini", "Padrino/Madrina", Padrino, "", ""},
    {"sposo", "Sposo", 2, "M", ""},
    {"padre_sposo", "Padre dello sposo", Padre, "M", "sposo"},
    {"madre_sposo", "Madre dello sposo", Madre, "F", "sposo"},
    {"sposa", "Sposa", Moglie, "F", ""},
    {"padre_sposa", "Padre della sposa", Padre, "M", "sposa"},
    {"madre_sposa", "Madre della sposa", Madre, "F", "sposa"},
    {"defunto", "Defunto/a", 4, "", ""},
    {"coniuge", "Coniuge", 0, "", ""},
    {"testimoni", "Testimone", 5, "", ""},
};

struct Evento {
    const char *nome;
    const char *etichetta;
    int tipo;
    const char *di;
};

constexpr Evento eventi[] = {
    {"nascita", "Nascita", Nascita, "battezzato"},
    {"battesimo", "Battesimo", Battesimo, "battezzato"},
    {"matrimonio", "Matrimonio", 18, ""},
    {"pubblicazioni", "Pubblicazioni", 19, ""},
    {"morte", "Morte", Morte, "defunto"},
    {"sepoltura", "Sepoltura", Sepoltura, "defunto"},
};

struct Voce {
    const char *nome;
    const char *etichetta; // vuota: nessuna casella
};

// Nell'ordine in cui stanno nelle righe.
constexpr Voce diPersona[] = {{"nome", "Nome"},       {"cognome", "Cognome"},
                              {"sesso", "Sesso"},     {"mestiere", "Precisazione"},
                              {"detto", "Detto"},     {"soprannome", "Soprannome"},
                              {"età", "Età"},         {"legittimo", "Legittimo"},
                              {"vivente", "Vivente"}, {"padre", ""}};
constexpr Voce diEvento[] = {
    {"data", "Data"}, {"luogo", "Luogo"}, {"causa", "Causa"}, {"valore", "Valore"}};
constexpr Voce diAtto[] = {
    {"volume", "Volume"}, {"pagina", "Pagina"}, {"numero", "Codice"}, {"data", "Data"}};

QString testo(const QJsonValue &valore)
{
    return valore.toVariant().toString().trimmed();
}

// Legge un atto, e ne costruisce caselle e righe.
class Lettore
{
public:
    explicit Lettore(const QJsonObject &dati) : m_dati(dati) {}

    Atto legge()
    {
        QStringList note{QStringLiteral("testo")};
        m_atto.righe.append(
            riga(QStringLiteral("voce"), valori(m_dati, diAtto, QStringLiteral("Atto"), note)));
        m_atto.data = testo(m_dati[QStringLiteral("data")]);
        m_atto.testo = testo(m_dati[QStringLiteral("testo")]);
        for (const Persona &una : persone)
            accoglie(una, note);
        famiglie();
        for (const Evento &uno : eventi)
            accoglie(uno, note);
        if (!m_atto.testo.isEmpty())
            m_atto.righe.append(
                riga(QStringLiteral("testo"), {QString::number(TestoRiportato), m_atto.testo}));
        for (const QString &chiave : m_dati.keys()) {
            if (!note.contains(chiave))
                throw std::invalid_argument(chiave.toStdString());
        }
        m_atto.righe.sort();
        return m_atto;
    }

private:
    // I valori di un oggetto, e le loro caselle; di ciò che ha in più si lamenta.
    template <size_t quante>
    QStringList valori(const QJsonObject &oggetto, const Voce (&voci)[quante], const QString &chi,
                       QStringList &note)
    {
        QStringList suoi;
        for (const Voce &una : voci) {
            const QString nome = QString::fromUtf8(una.nome);
            note.append(nome);
            if (*una.etichetta == '\0')
                continue;
            suoi.append(testo(oggetto[nome]));
            if (!suoi.last().isEmpty())
                m_atto.caselle.insert(chi + QStringLiteral(": ") + QString::fromUtf8(una.etichetta),
                                      suoi.last());
        }
        return suoi;
    }

    template <size_t quante>
    QStringList soloValori(const QJsonObject &oggetto, const Voce (&voci)[quante],
                           const QString &chi)
    {
        QStringList note;
        const QStringList suoi = valori(oggetto, voci, chi, note);
        for (const QString &chiave : oggetto.keys()) {
            if (!note.contains(chiave))
                throw std::invalid_argument((chi + u' ' + chiave).toStdString());
        }
        return suoi;
    }

    void accoglie(const Persona &una, QStringList &note)
    {
        const QString nome = QString::fromUtf8(una.nome);
        note.append(nome);
        const QJsonValue dati = m_dati[nome];
        const QString etichetta = QString::fromUtf8(una.etichetta);
        if (!dati.isArray()) {
            persona(una, dati.toObject(), etichetta);
            return;
        }
        int quale = 0;
        const QJsonArray elenco = dati.toArray();
        for (const auto &uno : elenco)
            persona(una, uno.toObject(), QStringLiteral("%1 %2").arg(etichetta).arg(++quale));
    }

    // Il posto dice il sesso, che allora non ha bisogno d'esser scritto.
    void persona(const Persona &una, const QJsonObject &dati, const QString &etichetta)
    {
        QStringList suoi = soloValori(dati, diPersona, etichetta);
        if (suoi.join(QString()).isEmpty())
            return;
        int ruolo = una.ruolo;
        QString sesso = QString::fromUtf8(una.sesso);
        if (ruolo == 0) {
            const bool marito = m_sesso[QStringLiteral("defunto")] == QStringLiteral("F");
            ruolo = marito ? Marito : Moglie;
            sesso = marito ? QStringLiteral("M") : QStringLiteral("F");
        }
        if (ruolo == Moglie && una.ruolo != 0 && !m_chi.contains(QStringLiteral("sposo")))
            ruolo = 3;
        if (!sesso.isEmpty()) {
            m_atto.caselle.remove(etichetta + QStringLiteral(": Sesso"));
            suoi[2] = sesso;
        }
        const QString nome = QString::fromUtf8(una.nome);
        m_sesso.insert(nome, suoi[2]);
        m_chi.insert(nome, QStringLiteral("%1 %2 %3").arg(ruolo).arg(suoi[0], suoi[1]));
        suoi.prepend(QString::number(ruolo));
        m_atto.righe.append(riga(QStringLiteral("persona"), suoi));
    }

    void famiglie()
    {
        for (const char *figlio : {"battezzato", "defunto", "sposo", "sposa"}) {
            const QString chi = m_chi.value(QString::fromUtf8(figlio));
            QStringList genitori;
            for (const Persona &una : persone) {
                if (QString::fromUtf8(una.figlio).split(u' ').contains(QString::fromUtf8(figlio)) &&
                    m_chi.contains(QString::fromUtf8(una.nome)))
                    genitori.append(m_chi[QString::fromUtf8(una.nome)]);
            }
            if (!genitori.isEmpty() && !chi.isEmpty())
                famiglia(FamigliaGenitori, genitori, {chi});
        }
        QStringList coppia;
        for (const char *nome : {"sposo", "sposa", "defunto", "coniuge"}) {
            if (m_chi.contains(QString::fromUtf8(nome)))
                coppia.append(m_chi[QString::fromUtf8(nome)]);
        }
        const bool sposi = testoDi("matrimonio") || testoDi("pubblicazioni");
        if (coppia.size() == 2 || sposi)
            m_coppia = famiglia(FamigliaConiuge, coppia, {});
    }

    bool testoDi(const char *nome) const { return m_dati.contains(QString::fromUtf8(nome)); }

    QString famiglia(int ruolo, QStringList coppia, const QStringList &figli)
    {
        coppia.sort();
        const QString sua = coppia.join(QStringLiteral(" + "));
        m_atto.righe.append(riga(QStringLiteral("famiglia"),
                                 {QString::number(ruolo), sua, figli.join(QStringLiteral(" + "))}));
        return QStringLiteral("%1 %2").arg(ruolo).arg(sua);
    }

    void accoglie(const Evento &uno, QStringList &note)
    {
        const QString nome = QString::fromUtf8(uno.nome);
        note.append(nome);
        QStringList suoi =
            soloValori(m_dati[nome].toObject(), diEvento, QString::fromUtf8(uno.etichetta));
        if (suoi.join(QString()).isEmpty())
            return;
        const QString di = QString::fromUtf8(uno.di);
        suoi.prepend(QString::number(uno.tipo));
        suoi.prepend(di.isEmpty() ? m_coppia : m_chi[di]);
        m_atto.righe.append(riga(QStringLiteral("evento"), suoi));
    }

    QJsonObject m_dati;
    Atto m_atto;
    QMap<QString, QString> m_chi;
    QMap<QString, QString> m_sesso;
    QString m_coppia;
};

int tipoDi(const QJsonObject &atto)
{
    if (atto.contains(QStringLiteral("battezzato")))
        return RegistroBattesimi;
    return atto.contains(QStringLiteral("defunto")) ? RegistroMorti : RegistroMatrimoni;
}

} // namespace

QString riga(const QString &specie, const QStringList &valori)
{
    QString scritta = specie;
    for (const QString &valore : valori)
        scritta += u'|' + (valore.isEmpty() ? nullo : valore);
    return scritta;
}

std::optional<Serie> legge(const QString &percorso, QString &motivo)
{
    QFile file(percorso);
    if (!file.open(QIODevice::ReadOnly)) {
        motivo = file.errorString();
        return {};
    }
    QJsonParseError errore;
    const QJsonArray dati = QJsonDocument::fromJson(file.readAll(), &errore).array();
    if (dati.isEmpty()) {
        motivo = errore.error == QJsonParseError::NoError ? QStringLiteral("nessun atto")
                                                          : errore.errorString();
        return {};
    }
    Serie letta;
    letta.tipo = tipoDi(dati.first().toObject());
    for (const auto &uno : dati) {
        try {
            letta.atti.append(Lettore(uno.toObject()).legge());
        } catch (const std::invalid_argument &ignoto) {
            motivo = QStringLiteral("atto %1: nessuna casella per \"%2\"")
                         .arg(letta.atti.size() + 1)
                         .arg(QString::fromUtf8(ignoto.what()));
            return {};
        }
    }
    return letta;
}

} // namespace serie
