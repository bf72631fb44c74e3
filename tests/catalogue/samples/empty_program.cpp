// The tests read only the resources of the sample programs.
int main() { return 0; }
