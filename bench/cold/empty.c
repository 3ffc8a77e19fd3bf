/* A process that does nothing: what every cold start costs. */
int main(void) {
  return 0;
}
