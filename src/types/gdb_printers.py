"""How gdb prints the value types. Reads the private members that their headers declare."""
import gdb
import gdb.printing


class ByteArrayPrinter:
    """The number of bytes, and the first of them, as many as `set print elements` allows."""

    def __init__(self, value):
        vector = value["bytes"]["_M_impl"]
        self.start = vector["_M_start"]
        self.length = int(vector["_M_finish"] - self.start)

    def to_string(self):
        return f"ByteArray of length {self.length}"

    def children(self):
        if not self.length:
            return
        shown = min(self.length, gdb.parameter("print elements") or self.length)
        memory = gdb.selected_inferior().read_memory(self.start, shown)
        yield "hexadecimal", memory.tobytes().hex().upper() + "..." * (shown < self.length)
        character = gdb.lookup_type("char").const().pointer()
        yield "text", self.start.cast(character).lazy_string("UTF-8", self.length)


class UnicodeStringPrinter:
    """The forms that are held."""

    def __init__(self, value):
        forms = ("wide", value["wideString"]), ("narrow", value["narrowString"])
        self.held = [(name, form) for name, form in forms if form["_M_string_length"]]

    def to_string(self):
        return "UnicodeString, " + ("no form" if not self.held else "both forms"
                                    if len(self.held) == 2 else f"{self.held[0][0]} form only")

    def children(self):
        return iter(self.held)


class AttributeMapPrinter:
    """The entries in key order. The standard library's printer cannot list them for a client whose
    library is stripped: the nodes' type is in no other debug information."""

    def __init__(self, value):
        self.tree = value["attributes"]["_M_t"]["_M_impl"]

    def to_string(self):
        return f"AttributeMap of length {self.tree['_M_node_count']}"

    def children(self):
        text = gdb.lookup_type("UnicodeString")
        key_pointer = text["narrowString"].type.pointer()
        for node in nodes(self.tree["_M_header"]["_M_parent"]):
            key = (node + 1).cast(key_pointer)
            yield "key", key.dereference()
            yield "value", (key + 1).cast(text.pointer()).dereference()

    def display_hint(self):
        return "map"


def nodes(root):
    if root:
        yield from nodes(root["_M_left"])
        yield root
        yield from nodes(root["_M_right"])


printers = gdb.printing.RegexpCollectionPrettyPrinter("CommonAPI")
for printer in ByteArrayPrinter, UnicodeStringPrinter, AttributeMapPrinter:
    name = printer.__name__.removesuffix("Printer")
    printers.add_printer(name, f"^{name}$", printer)
gdb.printing.register_pretty_printer(gdb.current_objfile(), printers, replace=True)
