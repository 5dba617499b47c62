#pragma once

#include <exception>
#include <qpdf/QPDFExc.hh>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace quillfern::pdf {

/// Carries an exception of ours through qpdf, out of a read or a write that qpdf asked for. qpdf takes every
/// std::exception for a damaged object, which it replaces by null, and goes on; a read error or a cancel
/// would lose objects that way. This type is none, so qpdf lets it pass.
class Interruption
{
  public:
    explicit Interruption(std::exception_ptr cause) : cause_(std::move(cause)) {}
    [[noreturn]] void rethrowCause() const { std::rethrow_exception(cause_); }

  private:
    std::exception_ptr cause_;
};

/// Runs a read or a write on behalf of qpdf; what it throws leaves as an Interruption.
template <class Work>
auto interruptible(Work&& work)
{
    try {
        return work();
    } catch (...) {
        throw Interruption(std::current_exception());
    }
}

/// Throws the Failure that says what the library's exception says.
[[noreturn]] void refuse(const QPDFExc& exception);
[[noreturn]] void refuse(const std::exception& error);

/// Runs work on a document and turns the exceptions of its library into Failure.
template <class Work>
auto translated(Work&& work)
{
    try {
        return work();
    } catch (const Interruption& interruption) {
        interruption.rethrowCause();
    } catch (const QPDFExc& exception) {
        refuse(exception);
    } catch (const std::system_error&) {
        throw; // the system's lack (of a thread, say) and not the document's
    } catch (const std::logic_error& error) {
        refuse(error);
    } catch (const std::runtime_error& error) {
        refuse(error);
    }
}

} // namespace quillfern::pdf
