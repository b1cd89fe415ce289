"""What becomes of bytes on their way through a hostile world. All of it follows from one seed."""

import random
import re

# Lengths, counts and offsets at which arithmetic goes wrong.
EDGES = [b"\0", b"\0\0\0\0", b"\xff" * 4, b"\x7f\xff\xff\xff", b"\x80\0\0\0", b"\x84\xff\xff\xff\xff", b"\x80"]
TEXTS = ["", "0", "-1", "2147483648", "99999999999999999999", "1e9", "%s%n", "&amp;", "&#0;", "&x;", "<", "]]>", "<!--"]
TEXTS += ["NOMORESERVICE", "\0", "\xe9\xff", "=\r\n[History]\r\n", "A" * 300, "9" * 5000, "0001-01-01", "9999-12-31"]

LONGEST_XML = 5 << 18  # more than the agent takes


class Mutator:
    """Dice with a memory for what may go wrong with bytes and texts."""

    def __init__(self, seed: object):
        self.dice = random.Random(str(seed))

    def chance(self, probability: float) -> bool:
        return self.dice.random() < probability

    def data(self, data: bytes, longest: int = 1 << 20) -> bytes:
        """The bytes with one to four mutations, at most `longest` of them."""
        for _ in range(self.dice.choice((1, 1, 1, 2, 4))):
            begin, end = sorted(self.dice.randrange(len(data) + 1) for _ in range(2))
            piece = data[begin:end]
            new = self.dice.choice((self._flipped, self._cut, self._doubled, self._noise, self._edge, self._swollen))
            data = (data[:begin] + new(piece) + (b"" if self.chance(0.1) else data[end:]))[:longest]
        return data

    def _flipped(self, piece: bytes) -> bytes:
        if not piece:
            return b"\x01"
        at = self.dice.randrange(len(piece))
        return piece[:at] + bytes((piece[at] ^ 1 << self.dice.randrange(8),)) + piece[at + 1 :]

    def _cut(self, _piece: bytes) -> bytes:
        return b""

    def _doubled(self, piece: bytes) -> bytes:
        return piece * 2

    def _noise(self, piece: bytes) -> bytes:
        return self.dice.randbytes(min(len(piece), self.dice.choice((1, 8, 64))))

    def _edge(self, piece: bytes) -> bytes:
        return self.dice.choice(EDGES) + piece[4:]

    def _swollen(self, piece: bytes) -> bytes:
        return (piece[:1000] or b"\xff") * self.dice.choice((3, 50, 2000))

    def xml(self, text: str) -> str:
        """A document in which texts, elements or their order are not what they should be."""
        for _ in range(self.dice.choice((1, 2, 5))):
            tokens = re.findall(r"<[^>]*>|[^<]+", text)
            if not tokens:
                return text
            at = self.dice.randrange(len(tokens))
            token = tokens[at]
            tokens[at] = self.dice.choice(
                (
                    "",
                    token * 2,
                    token[:500] * 1000,
                    self.dice.choice(tokens),
                    self.dice.choice(TEXTS),
                    token + self.dice.choice(TEXTS),
                    "<x>" * self.dice.choice((1, 90, 150, 5000)) + token,
                    self.data(token.encode()).decode("latin-1"),
                )
            )
            text = "".join(tokens)[:LONGEST_XML]
        return text
