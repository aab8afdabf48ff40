#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>

class Hunspell;

// Il dizionario italiano di Hunspell e le parole aggiunte da chi scrive.
namespace dizionario
{

// Il percorso del dizionario, senza estensione: si cerca in DICPATH e nelle cartelle di sistema.
// Vuoto se non è installato.
QString percorso();
// Il file delle parole aggiunte, una per riga in UTF-8, nella cartella dei dati dell'utente.
QString fileParole();

class Dizionario
{
public:
    // Legge il dizionario installato e le parole aggiunte; fallisce con std::runtime_error se non
    // si possono leggere.
    Dizionario();
    ~Dizionario();
    Dizionario(const Dizionario &) = delete;
    Dizionario &operator=(const Dizionario &) = delete;

    // Vero se la parola è scritta bene. Apostrofi e accenti valgono in ogni loro forma; una parola
    // elisa ("quest'") è buona se lo è con una vocale al posto dell'apostrofo.
    bool corretta(const QString &parola) const;
    QStringList suggerimenti(const QString &parola) const;
    // Per il pezzo eliso di una parola ("qest'" di "qest'anno"): ciò che si suggerisce finisce con
    // l'apostrofo, come il pezzo.
    QStringList elisioni(const QString &parola) const;
    // Aggiunge la parola a quelle dell'utente, che valgono anche in maiuscolo, e la registra;
    // fallisce con std::runtime_error se non si può registrare.
    void aggiungi(const QString &parola);

private:
    QStringList proposte(const QString &forma) const;
    bool conosce(const QString &parola) const;
    std::string codificata(const QString &parola) const;
    QString decodificata(const std::string &parola) const;
    void leggeParole();

    std::unique_ptr<Hunspell> m_hunspell;
    QString m_codifica;
    QStringList m_aggiunte;
    QSet<QString> m_mie;
};

} // namespace dizionario
