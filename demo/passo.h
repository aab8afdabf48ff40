#pragma once

#include <coroutine>
#include <exception>
#include <utility>

// Un pezzo di copione: una coroutine che comincia quando un'altra la aspetta.
//
// Ogni attesa finisce in un giro nuovo del ciclo degli eventi. Così il copione si scrive di
// seguito anche dove un clic apre una finestra modale: il ciclo di quella finestra gira sotto il
// copione, che va avanti da lì, e si chiude senza che il copione stia sulla sua pila.
class Passo
{
public:
    class promise_type
    {
    public:
        Passo get_return_object() { return Passo(Maniglia::from_promise(*this)); }
        std::suspend_always initial_suspend() noexcept { return {}; }
        auto final_suspend() noexcept { return Fine{}; }
        void return_void() {}
        void unhandled_exception() { m_errore = std::current_exception(); }

    private:
        friend class Passo;
        std::coroutine_handle<> m_seguito = std::noop_coroutine();
        std::exception_ptr m_errore;
    };

    Passo(Passo &&altro) noexcept : m_maniglia(std::exchange(altro.m_maniglia, {})) {}
    Passo(const Passo &) = delete;
    Passo &operator=(const Passo &) = delete;
    ~Passo()
    {
        if (m_maniglia)
            m_maniglia.destroy();
    }

    // Per il primo passo, che nessuno aspetta.
    void comincia() { m_maniglia.resume(); }

    bool await_ready() const noexcept { return false; }
    std::coroutine_handle<> await_suspend(std::coroutine_handle<> seguito) noexcept
    {
        m_maniglia.promise().m_seguito = seguito;
        return m_maniglia;
    }
    void await_resume() const
    {
        if (m_maniglia.promise().m_errore)
            std::rethrow_exception(m_maniglia.promise().m_errore);
    }

private:
    using Maniglia = std::coroutine_handle<promise_type>;

    struct Fine {
        bool await_ready() const noexcept { return false; }
        std::coroutine_handle<> await_suspend(Maniglia finita) noexcept
        {
            return finita.promise().m_seguito;
        }
        void await_resume() const noexcept {}
    };

    explicit Passo(Maniglia maniglia) : m_maniglia(maniglia) {}

    Maniglia m_maniglia;
};
