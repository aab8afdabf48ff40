#pragma once

#include "editors/casella.h"

#include <QString>

#include <optional>

class Limite;
class QLineEdit;

// Fa sì che la casella mostri un asterisco al posto di ogni carattere.
void nascondeCaratteri(QLineEdit *casella);

// Una casella in cui si scrive, e i testi senza altro formato: si registrano senza gli spazi che
// hanno attorno. Le caselle di una riga con un formato nascono da questa.
//
// Un valore più lungo di quanto la casella accetta, venuto da altrove, resta intero; di ciò che non
// entra dice la nota.
class CasellaTesto : public Casella
{
    Q_OBJECT

public:
    CasellaTesto(const DescrizioneCampo &descrizione, QWidget *sopra);

    QString testo() const;

    QString scritta() const override { return testo(); }
    QVariant valore() const override;
    QString rifiuto() const override;
    bool vuota() const override;
    void setSolaLettura(bool sola) override;
    QWidget *parte() const override;
    void riprende() override;
    QLabel *nota(QWidget *sopra) override;
    void numera(int indice) override;

protected:
    // Come si scrive il valore dato.
    virtual QString scritto(const QVariant &valore) const { return valore.toString(); }
    // Il valore di un testo che non è fatto di soli spazi; niente se non si può leggere.
    virtual std::optional<QVariant> legge(const QString &testo) const;
    // Il messaggio per un testo che non si può leggere.
    virtual QString motivo() const { return {}; }

    void presenta() override;
    void mette(const QString &testo) override { riscrive(testo); }
    // Cambia il testo come se lo avesse scritto il programma, non chi usa la casella.
    void riscrive(const QString &testo);
    // Ciò che serve a leggere è cambiato: si rilegga.
    void daRileggere() { m_daLeggere = true; }

private:
    const std::optional<QVariant> &letto() const;

    QLineEdit *m_riga;
    Limite *m_limite;
    // L'ultima lettura del testo, che si fa una volta sola finché nessuno lo cambia.
    mutable std::optional<QVariant> m_letto;
    mutable bool m_daLeggere = true;
};

// Una password: nascosta, e registrata com'è scritta.
class CasellaPassword : public CasellaTesto
{
    Q_OBJECT

public:
    CasellaPassword(const DescrizioneCampo &descrizione, QWidget *sopra);

    QString scritta() const override { return {}; }

protected:
    void mette(const QString & /*testo*/) override {}
    std::optional<QVariant> legge(const QString &testo) const override { return testo; }
};
