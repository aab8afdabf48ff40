#include "demo/caselle.h"

#include "demo/attesa.h"

using namespace Qt::StringLiterals;
using namespace esempi;

namespace
{

// Chi la pagina numera, perché possono essere tanti.
const QStringList elenchi{u"Padrino/Madrina"_s, u"Testimone"_s, u"Altra persona"_s};
// Di chi il sesso lo dice già il ruolo.
const QStringList delRuolo{u"Sposo"_s, u"Padre"_s, u"Madre"_s, u"Marito"_s, u"Moglie"_s};

class Lettura
{
public:
    QMap<QString, QString> legge(const Atto &atto)
    {
        mette(u"Atto"_s, {{u"Volume"_s, atto.volume},
                          {u"Pagina"_s, atto.pagina},
                          {u"Codice"_s, atto.numero},
                          {u"Data"_s, atto.data}});
        for (const Individuo &persona : atto.persone) {
            const bool tanti = elenchi.contains(persona.ruolo);
            accoglie(persona, tanti ? u"%1 %2"_s.arg(persona.ruolo).arg(++m_quanti[persona.ruolo])
                                    : persona.ruolo);
        }
        m_caselle.insert(u"Testo"_s, atto.testo);
        m_caselle.insert(u"Nota"_s, atto.traduzione);
        m_caselle.removeIf([](const auto &una) { return una.value().isEmpty(); });
        return m_caselle;
    }

private:
    void mette(const QString &chi, const QMap<QString, QString> &valori)
    {
        for (auto valore = valori.begin(); valore != valori.end(); ++valore)
            m_caselle.insert(chi + u": "_s + valore.key(), valore.value());
    }

    void accoglie(const Individuo &persona, const QString &chi)
    {
        mette(chi, {{u"Nome"_s, persona.nome},
                    {u"Cognome"_s, persona.cognome},
                    {u"Precisazione"_s, persona.precisazione},
                    {u"Età"_s, persona.eta},
                    {u"Sesso"_s, delRuolo.contains(persona.ruolo) ? QString() : persona.sesso}});
        eventi(persona.eventi);
        for (const Famiglia &sua : persona.famiglie) {
            eventi(sua.eventi);
            for (const Individuo &membro : sua.membri)
                accoglie(membro, nomeDi(membro.ruolo, chi));
        }
    }

    // Come la pagina chiama chi sta in una famiglia della persona data.
    static QString nomeDi(const QString &ruolo, const QString &di)
    {
        if (ruolo == u"Padre"_s || ruolo == u"Madre"_s) {
            return ruolo + (di == u"Sposo"_s   ? u" dello sposo"_s
                            : di == u"Sposa"_s ? u" della sposa"_s
                                               : QString());
        }
        return di == u"Sposo"_s ? u"Sposa"_s : u"Coniuge"_s;
    }

    void eventi(const std::vector<Evento> &questi)
    {
        for (const Evento &evento : questi) {
            if (m_caselle.contains(evento.tipo + u": Data"_s))
                throw Guasto(u"the page has one place for "_s + evento.tipo);
            mette(evento.tipo, {{u"Data"_s, evento.data},
                                {u"Luogo"_s, evento.luogo},
                                {u"Valore"_s, evento.valore}});
        }
    }

    QMap<QString, QString> m_caselle;
    QMap<QString, int> m_quanti;
};

} // namespace

QMap<QString, QString> caselleDi(const Atto &atto)
{
    return Lettura().legge(atto);
}
