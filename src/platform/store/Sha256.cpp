#include "platform/store/Sha256.h"

#include "platform/system/Cancellation.h"
#include "platform/system/FileAccess.h"

#include <algorithm>
#include <array>
#include <nettle/sha2.h>

namespace quillfern::store {

struct Sha256::State
{
    sha256_ctx context;
};

Sha256::Sha256() : state_(std::make_unique<State>())
{
    sha256_init(&state_->context);
}

Sha256::~Sha256() = default;
Sha256::Sha256(Sha256&& other) noexcept = default;
Sha256& Sha256::operator=(Sha256&& other) noexcept = default;

void Sha256::add(const char* data, std::size_t size)
{
    sha256_update(&state_->context, size, reinterpret_cast<const std::uint8_t*>(data));
}

QByteArray Sha256::digest() const
{
    State whole = *state_; // taking the digest begins anew
    std::array<std::uint8_t, SHA256_DIGEST_SIZE> bytes = {};
    sha256_digest(&whole.context, bytes.size(), bytes.data());
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), bytes.size()).toHex();
}

QByteArray Sha256::ofFile(int descriptor, long long size, const std::stop_token& stop)
{
    Sha256 hash;
    QByteArray block(1 << 20, Qt::Uninitialized);
    for (long long done = 0; done < size;) {
        throwIfCancelled(stop);
        const auto count = static_cast<std::size_t>(std::min<long long>(block.size(), size - done));
        readExactly(descriptor, done, block.data(), count);
        hash.add(block.constData(), count);
        done += static_cast<long long>(count);
    }
    return hash.digest();
}

} // namespace quillfern::store
