#include "bench/tavola.h"

#include <QElapsedTimer>
#include <QFile>

#include <algorithm>

double mediana(std::vector<double> valori)
{
    std::sort(valori.begin(), valori.end());
    return valori.empty() ? 0 : valori[valori.size() / 2];
}

double millisecondi(const std::function<void()> &lavoro)
{
    QElapsedTimer orologio;
    orologio.start();
    lavoro();
    return static_cast<double>(orologio.nsecsElapsed()) / 1e6;
}

double memoriaMassima()
{
    QFile stato(QStringLiteral("/proc/self/status"));
    if (!stato.open(QIODevice::ReadOnly))
        qFatal("il sistema non dice la memoria");
    for (const QByteArray &riga : stato.readAll().split('\n')) {
        if (riga.startsWith("VmHWM:"))
            return riga.mid(6).simplified().split(' ').value(0).toDouble() / 1024;
    }
    qFatal("il sistema non dice la memoria");
}

void azzeraMemoriaMassima()
{
    // proc(5): 5 in clear_refs riporta il massimo a ciò che è occupato ora.
    QFile segni(QStringLiteral("/proc/self/clear_refs"));
    if (!segni.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || segni.write("5") != 1)
        qFatal("la memoria massima non si può azzerare");
}

void Tavola::intesta()
{
    m_uscita << QStringLiteral("%1 %2 %3 %4 %5\n")
                    .arg(QStringLiteral("figura"), -50)
                    .arg(QStringLiteral("mediana"), 10)
                    .arg(QStringLiteral("pavimento"), 10)
                    .arg(QStringLiteral("rapp."), 7)
                    .arg(QStringLiteral("meta"), 8);
    m_uscita.flush();
}

void Tavola::rapporto(const char *nome, double meta, const std::function<double()> &nostro,
                      const std::function<double()> &pavimento, int serie)
{
    const int volte = m_volte * serie;
    std::vector<double> nostri;
    std::vector<double> loro;
    nostri.reserve(static_cast<size_t>(volte));
    loro.reserve(static_cast<size_t>(volte));
    for (int i = 0; i <= volte; ++i) {
        const double suo = pavimento();
        const double mio = nostro();
        if (i > 0) {
            nostri.push_back(mio);
            loro.push_back(suo);
        }
    }
    rapporto(nome, meta, mediana(nostri), mediana(loro));
}

void Tavola::assoluto(const char *nome, double meta, const std::function<double()> &nostro)
{
    std::vector<double> nostri;
    nostri.reserve(static_cast<size_t>(m_volte));
    for (int i = 0; i < m_volte; ++i)
        nostri.push_back(nostro());
    assoluto(nome, meta, mediana(nostri));
}

void Tavola::rapporto(const char *nome, double meta, double nostro, double suo)
{
    riga(nome, nostro, suo, nostro / suo, meta, nostro / suo <= meta);
}

void Tavola::assoluto(const char *nome, double meta, double nostro)
{
    riga(nome, nostro, 0, 0, meta, meta == 0 || nostro <= meta);
}

void Tavola::riga(const char *nome, double nostro, double suo, double quanto, double meta,
                  bool bene)
{
    m_bastata = m_bastata && bene;
    const auto numero = [](double valore, int larga) {
        return valore == 0 ? QString(larga, u' ') : QStringLiteral("%1").arg(valore, larga, 'f', 2);
    };
    m_uscita << QStringLiteral("%1").arg(QString::fromUtf8(nome), -50) << ' ' << numero(nostro, 10)
             << ' ' << numero(suo, 10) << ' ' << numero(quanto, 7) << ' ' << numero(meta, 8)
             << (meta == 0 ? ""
                 : bene    ? " ok"
                           : " short")
             << '\n';
    m_uscita.flush();
}
