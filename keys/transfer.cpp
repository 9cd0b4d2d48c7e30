#include "keys/transfer.h"

namespace corvane::keys {

namespace {

using Bytes = std::vector<std::uint8_t>;

template <typename Range>
void append(Bytes &bytes, const Range &range)
{
    bytes.insert(bytes.end(), range.begin(), range.end());
}

template <typename Unsigned>
void appendLittleEndian(Bytes &bytes, Unsigned value)
{
    for (std::size_t index = 0; index < sizeof(Unsigned); ++index) {
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * index)));
    }
}

/// The System Program's instruction number 2, "transfer".
Bytes transferInstruction(Lamports amount)
{
    Bytes data;
    appendLittleEndian(data, std::uint32_t{2});
    appendLittleEndian(data, amount.count());
    return data;
}

} // namespace

void appendCompactLength(Bytes &bytes, std::size_t length)
{
    for (; length >= 0x80; length >>= 7) {
        bytes.push_back(static_cast<std::uint8_t>(0x80 | (length & 0x7f)));
    }
    bytes.push_back(static_cast<std::uint8_t>(length));
}

Bytes transferMessage(const Transfer &transfer)
{
    constexpr std::array<std::uint8_t, 32> systemProgram{};
    const Bytes data = transferInstruction(transfer.amount);

    Bytes message;
    message.push_back(1); // required signatures
    message.push_back(0); // read-only signed accounts
    message.push_back(1); // read-only unsigned accounts

    message.push_back(3); // account keys
    append(message, transfer.sender.bytes);
    append(message, transfer.recipient.bytes());
    append(message, systemProgram);

    append(message, transfer.recentBlockhash.bytes);

    message.push_back(1); // instructions
    message.push_back(2); // program: the third account key
    message.push_back(2); // accounts of the instruction
    message.push_back(0); // from the sender
    message.push_back(1); // to the recipient
    appendCompactLength(message, data.size());
    append(message, data);
    return message;
}

QByteArray signedTransaction(const platform::Signature &signature, const Bytes &message)
{
    Bytes transaction;
    transaction.push_back(1); // signatures
    append(transaction, signature.bytes);
    append(transaction, message);
    return QByteArray(reinterpret_cast<const char *>(transaction.data()),
                      static_cast<qsizetype>(transaction.size()))
        .toBase64();
}

} // namespace corvane::keys
