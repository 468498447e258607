// The least that a process costs.
int main() {
    return 0;
}
