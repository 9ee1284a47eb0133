struct DefinedTwice {};
