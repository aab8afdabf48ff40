#pragma once

#include "platform/lingua/dizionario.h"
#include "platform/lingua/parole.h"

#include <QHash>
#include <QSet>

// Il giro per le parole sbagliate di un testo, senza finestre.
class Correttore
{
public:
    Correttore(QString testo, const dizionario::Dizionario &dizionario, bool ignoraMaiuscole);

    // Passa alla prima parola sbagliata non ancora decisa; falso se non ce n'è più.
    bool avanza();
    const QString &testo() const { return m_testo; }
    const parole::Parola &posto() const { return m_corrente; }
    QString parola() const { return m_testo.mid(m_corrente.inizio, m_corrente.lunghezza); }

    // Che cosa scrivere al suo posto, il più probabile per primo; un'elisione resta tale.
    QStringList suggerimenti() const;

    // Decidono della parola corrente; le altre uguali solo se `tutte`.
    void cambia(const QString &nuova, bool tutte);
    void ignora(bool tutte);

private:
    bool daVedere(const parole::Parola &parola) const;
    void cambiaLeAltre(const QString &vecchia, const QString &nuova);

    QString m_testo;
    const dizionario::Dizionario &m_dizionario;
    bool m_ignoraMaiuscole;
    parole::Parola m_corrente;
    qsizetype m_deciso = 0;
    QSet<QString> m_ignorate;
};
