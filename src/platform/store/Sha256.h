#pragma once

#include <QByteArray>
#include <cstddef>
#include <memory>
#include <stop_token>

namespace quillfern::store {

/// SHA-256 (FIPS 180-4) of bytes that come piece by piece.
class Sha256
{
  public:
    Sha256();
    ~Sha256();
    Sha256(Sha256&& other) noexcept;
    Sha256& operator=(Sha256&& other) noexcept;

    void add(const char* data, std::size_t size);
    /// Of all bytes so far: 64 hexadecimal digits in small letters. More may be added afterwards.
    [[nodiscard]] QByteArray digest() const;

    /// Of the first `size` bytes of an open file, whose position is not used. Throws Failure, and Cancelled
    /// once `stop` is stopped.
    [[nodiscard]] static QByteArray ofFile(int descriptor, long long size, const std::stop_token& stop = {});

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace quillfern::store
