"""A plain RC2 after RFC 2268, the reference for the program's own."""

PI_TABLE = bytes.fromhex(
    "d978f9c419ddb5ed28e9fd794aa0d89dc67e37832b76538e624c6488448bfba2"
    "179a59f587b34f1361456d8d09817d32bd8f40eb86b77b0bf09521225c6b4e82"
    "54d66593ce60b21c7356c014a78cf1dc1275ca1f3bbee4d1423dd430a33cb626"
    "6fbf0eda4669075727f21d9bbc944303f811c7f690ef3ee706c3d52fc8661ed7"
    "08e8eade8052eef784aa72ac354d6a2a961ad2715a1549744b9fd05e0418a4ec"
    "c2e0416e0f51cbcc2491af50a1f47039997c3a8523b8b47afc02365b25559731"
    "2d5dfa98e38a92ae05df2910676cbac9d300e6cfe19ea82c6316013f58e289a9"
    "0d38341bab33ffb0bb480c5fb9b1cd2ec5f3db47e5a59c770aa62068fe7fc1ad")
ROTATIONS = (1, 2, 3, 5)


def expand_key(key, effective_bits):
    """The 64 words of the key."""
    table = bytearray(key)
    for i in range(len(key), 128):
        table.append(PI_TABLE[(table[i - 1] + table[i - len(key)]) % 256])
    effective_bytes = (effective_bits + 7) // 8
    mask = 255 >> (8 * effective_bytes - effective_bits)
    table[128 - effective_bytes] = PI_TABLE[table[128 - effective_bytes] & mask]
    for i in range(127 - effective_bytes, -1, -1):
        table[i] = PI_TABLE[table[i + 1] ^ table[i + effective_bytes]]
    return [table[2 * i] | table[2 * i + 1] << 8 for i in range(64)]


def encrypt_block(words, block):
    r = [int.from_bytes(block[i:i + 2], "little") for i in range(0, 8, 2)]
    for step in range(16):
        for i in range(4):
            mixed = r[i] + words[4 * step + i] + (r[i - 1] & r[i - 2]) + (~r[i - 1] & r[i - 3])
            mixed &= 0xFFFF
            r[i] = (mixed << ROTATIONS[i] | mixed >> (16 - ROTATIONS[i])) & 0xFFFF
        if step in (4, 10):
            for i in range(4):
                r[i] = (r[i] + words[r[i - 1] & 63]) & 0xFFFF
    return b"".join(word.to_bytes(2, "little") for word in r)


def encrypt_cbc(key, effective_bits, data):
    """From a zero initialization vector, with PKCS #5 padding."""
    words = expand_key(key, effective_bits)
    padding = 8 - len(data) % 8
    data += bytes([padding]) * padding
    chained, out = bytes(8), b""
    for i in range(0, len(data), 8):
        chained = encrypt_block(words, bytes(a ^ b for a, b in zip(chained, data[i:i + 8])))
        out += chained
    return out
