"""Copies of files with damage drawn by lot: what the tests of the tools and tools/same_answers share."""


def damaged(data, chance):
    """A copy with some bytes changed, most of them where structures stand, or with its end cut off."""
    data = bytearray(data)
    few = 1 + len(data) // 64  # of a small file more would leave nothing that a reader knows
    for _ in range(min(chance.choice([1, 3, 10, 100]), few)):
        most = min(chance.choice([64, 1024, len(data)]), len(data))
        data[chance.randrange(most)] = chance.choice([0, 1, 0x7F, 0x80, 0xFF, chance.randrange(256)])
    return data[:chance.randrange(len(data))] if chance.random() < 0.2 else data
