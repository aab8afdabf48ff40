#pragma once

#include "texts/formule_registro.h"

#include <QObject>

#include <optional>

class Pagina;
class QAction;
class TestoPagina;

// Il testo riportato di una pagina, continuato dalle formule che il registro ripete. Le impara, in
// un filo a parte, dagli atti del registro; poi da ogni atto che la pagina registra.
class FormuleScheda : public QObject
{
    Q_OBJECT

public:
    // `atto` è quello che la pagina mostra: le sue caselle riempiono le formule.
    FormuleScheda(Pagina *pagina, const QString &percorso, const QString &registro);

    // La pagina mostra quest'atto; ciò che si era fatto tacere nell'altro torna a parlare.
    void mostra(const modTarvola::scheda::SchedaAtto &atto);
    // Nelle caselle è cambiato qualcosa.
    void cambiate() { m_daLeggere = true; }
    // L'atto è stato registrato com'è qui: il suo testo, se è nuovo, si ripeterà.
    void impara(const modTarvola::scheda::SchedaAtto &atto);
    // Le caselle che il testo dice e che nella pagina nessuno ha scritto.
    QMap<modTarvola::scheda::Indirizzo, modTarvola::formule::Lettura>
    leggeCaselle(const QString &testo) const;
    // Il testo riportato della pagina; nullo se non l'ha.
    TestoPagina *testo() const { return m_testo; }
    // Vero da quando ciò che il registro ha scritto è stato letto.
    bool pronta() const { return m_registro != nullptr && m_registro->formulario() != nullptr; }
    // I comandi per il menu della pagina; nessuno se la pagina non ha un testo.
    QList<QAction *> comandi() const;

private:
    const modTarvola::formule::Caselle &caselle();

    Pagina *m_pagina;
    TestoPagina *m_testo;
    std::optional<modTarvola::scheda::SchedaAtto> m_atto;
    FormuleRegistro *m_registro = nullptr;
    modTarvola::formule::Caselle m_caselle;
    bool m_daLeggere = true;
};
