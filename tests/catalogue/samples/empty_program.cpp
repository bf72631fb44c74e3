// What counts of the sample programs is their resources.
int main() { return 0; }
