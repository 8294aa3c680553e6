/* The component from C: cc by_name.c -o by_name && ./by_name .../libvqmath63.so */
#include <vqmath63/component/by_name.h>

static void show_line(const char* line, void* context) {
  (void)context;
  puts(line);
}

int main(int argc, char** argv) {
  /* Column after column: months since the start, and the rate of the month that ends there. */
  const float data[] = {0, 1, 2, 3, 5, 20, 30, 40};
  double x[] = {0.5, 1, 2}, erf[3];
  const float time[] = {0, 1, 2}, rate[] = {0, 1, 4};
  VqValue sent[3], curve[2], word, area;
  VqStride values = {x, sizeof *x}, results = {erf, sizeof *erf};
  VqLibrary vq;
  VqObject well, functions, integrate;
  size_t k;
  if (!vq_open(&vq, argc > 1 ? argv[1] : NULL) || !vq_create(&vq, "ztAccumulate", &well) ||
      !vq_create(&vq, "ztMathLib", &functions) || !vq_create(&vq, "ztIntegrate", &integrate)) {
    puts(vq.error);
    return 1;
  }
  vq_on_line(&vq, &show_line, NULL);

  vq_set(&well, "StartData", vq_date(2023, 1, 31)); /* the moment of time 0 */
  vq_set(&well, "StartDate", vq_date(2023, 1, 31)); /* where reporting begins */
  vq_set(&well, "DataPeriod", vq_text("month"));
  vq_set(&well, "Period", vq_text("Month"));
  sent[0] = vq_table(data, 4, 2);
  sent[1] = sent[2] = vq_nothing(); /* the table and the flag that come back */
  if (!vq_call(&well, "Accumulate", sent, 3, NULL)) puts(vq.error);
  vq_get(&well, "Period", &word);
  printf("by %s, ok: %s\n", word.text, sent[2].number != 0 ? "True" : "False");
  for (k = 0; k < sent[1].rows; ++k) {
    printf("day %3.0f  rate %5.2f\n", vq_at(&sent[1], k, 0), vq_at(&sent[1], k, 1));
  }

  if (!vq_call_many(&functions, "Erf", 3, &values, 1, results, NULL)) puts(vq.error);
  for (k = 0; k < 3; ++k) printf("Erf(%.1f) = %.14f\n", x[k], erf[k]);

  vq_set(&integrate, "IntegrationRule", vq_number(2)); /* Simpson's */
  curve[0] = vq_singles(time, 3);
  curve[1] = vq_singles(rate, 3);
  if (vq_call(&integrate, "Integral", curve, 2, &area)) printf("area %.9g\n", area.number);
  curve[1] = vq_singles(rate, 2); /* one too few: an error line */
  vq_call(&integrate, "Integral", curve, 2, &area);
  curve[1] = vq_number(7);
  if (!vq_call(&integrate, "Integral", curve, 2, &area)) puts(vq.error);

  vq_free(&vq, &word);
  vq_free(&vq, &sent[1]);
  vq_release(&well);
  vq_release(&functions);
  vq_release(&integrate);
  vq_close(&vq);
  return 0;
}
