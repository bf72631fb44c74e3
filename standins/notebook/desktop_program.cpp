// Stand-in: a desktop program of the simulated notebook. It does nothing: the library reads its
// icon and its version resource.

int main() { return 0; }
