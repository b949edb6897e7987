"""The workloads: their sizes, what their checksums have to be, and the ratios to reach."""


def fibonacci(n):
    a, b = 0, 1
    for _ in range(n):
        a, b = b, a + b
    return a


class Workload:
    def __init__(self, name, what, size, checksum, target=None, beside=None, scaled=True, small=4000):
        self.name, self.what, self.size = name, what, size
        self.checksum = checksum  # of a size
        self.target = target  # the ratio to Lua 5.4 that is wanted; None: there is none
        self.beside = beside or name  # Lua's workload to compare with
        self.scaled = scaled  # whether a slow program may do less: not where an iteration of a larger run costs more
        self.small = small  # the size to count instructions and to try things out at

    def iterations(self, size):
        """What the time is divided by; W3 counts calls."""
        return 2 * fibonacci(size + 1) - 1 if self.name == "W3" else size

    def quarter(self, size):
        """The size with about a fourth of the work."""
        return size - 3 if self.name == "W3" else size // 4


def same(n):
    return n


def modulus(n):
    return 3 * n * (n - 1) // 2 % 1000003


def triple(n):
    return 3 * n


def digits(n):
    return sum(len(str(i)) for i in range(n))


def numbers_below(n):
    return n * (n - 1) // 2


def numbers_to(n):
    return n * (n + 1) // 2


WORKLOADS = [
    Workload("W1", "numbers in a loop", 3000000, modulus, 6),
    Workload("W1s", "the same with variables that began as texts", 3000000, modulus, 9, "W1"),
    Workload("W2", "calls of a function", 1000000, triple, 5),
    Workload("W2h", "calls of a statement of the host", 1000000, triple),
    Workload("W3", "calls of a function by itself", 27, fibonacci, 5, small=17),
    Workload("W4", "texts", 200000, digits, 0.7, scaled=False),
    Workload("W5", "an array", 300000, numbers_below, 3, scaled=False),
    Workload("W6", "a map", 200000, numbers_below, 0.7, scaled=False),
    Workload("W7", "a field of an object of the host", 1000000, same, 0.9),
    Workload("W8", "calls from the host: a parsed tree", 1000000, numbers_to, 1.0),
    Workload("W8r", "calls from the host: a function resolved once", 1000000, numbers_to, None, "W8"),
    Workload("W8e", "calls from the host: a function by its name", 1000000, numbers_to, None, "W8"),
    Workload("W9", "loading functions", 2000, same, 1.0, scaled=False, small=2000),
    Workload("W9k", "loading functions and keeping them", 2000, same, None, scaled=False, small=2000),
    Workload("W9c", "first calls of functions", 2000, same, None, "W9", small=8),
    Workload("W1f", "W1 in the language's own counted loop", 3000000, modulus),
    Workload("W6d", "W6 with the language's other map", 200000, numbers_below, scaled=False),
]
