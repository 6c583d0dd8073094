/* The same work as in many an Ombrel program: numbers, strings, branches and loops. */
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define WINDOW 16

struct sample {
    double value;
    int flags; /* what the filter found out */
    char name[32];
};

static double middle(const double *values, int count)
{
    double sum = 0;
    int k;
    for (k = 0; k < count; k++) {
        sum += values[k]; /* a mean is good enough here */
    }
    return count > 0 ? sum / count : 0;
}

int find_spikes(struct sample *samples, int count, double threshold)
{
    double window[WINDOW];
    int found = 0;
    int i, k;

    if (samples == NULL || count < WINDOW) {
        fprintf(stderr, "at least %d samples are needed, and %d were given\n", WINDOW, count);
        return -1;
    }
    for (i = 0; i + WINDOW <= count; i++) {
        double level;
        for (k = 0; k < WINDOW; k++) {
            window[k] = samples[i + k].value;
        }
        level = middle(window, WINDOW);
        if (fabs(samples[i].value - level) > threshold * fmax(level, 1e-12)) {
            samples[i].flags |= 1;
            found++;
        } else if (samples[i].flags & 2) {
            samples[i].flags &= ~2;
        } else {
            samples[i].flags = 0;
        }
    }
    return found;
}

/* Names of the samples that are spikes, in one string. The caller frees it. */
char *join_names(const struct sample *samples, int count, const char *separator)
{
    size_t length = 1;
    char *text;
    int i;
    for (i = 0; i < count; i++) {
        length += strlen(samples[i].name) + strlen(separator);
    }
    text = malloc(length);
    if (!text) {
        return NULL;
    }
    text[0] = '\0';
    for (i = 0; i < count; i++) {
        switch (samples[i].flags) {
        case 0:
            break;
        case 1:
            strcat(text, samples[i].name);
            strcat(text, separator);
            break;
        default:
            strcat(text, "?");
        }
    }
    return text;
}

