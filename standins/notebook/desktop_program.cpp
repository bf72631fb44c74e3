// Stand-in: a desktop program of the simulated notebook. It does nothing; what counts are its icon
// and its version resource.

int main() { return 0; }
