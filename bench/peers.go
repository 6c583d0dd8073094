// Sample is one number of a row, with what the filter found out about it.
type Sample struct {
	Value float64
	Flags int // what the filter found out
	Name  string
}

const window = 16

func middle(values []float64) float64 {
	sum := 0.0
	for _, value := range values {
		sum += value // a mean is good enough here
	}
	if len(values) == 0 {
		return 0
	}
	return sum / float64(len(values))
}

// FindSpikes marks the samples that are far from the mean of the window around them.
func FindSpikes(samples []Sample, threshold float64) (int, error) {
	if len(samples) < window {
		return 0, fmt.Errorf("at least %d samples are needed, and %d were given", window, len(samples))
	}
	found := 0
	for i := 0; i+window <= len(samples); i++ {
		values := make([]float64, 0, window)
		for k := 0; k < window; k++ {
			values = append(values, samples[i+k].Value)
		}
		level := middle(values)
		if math.Abs(samples[i].Value-level) > threshold*math.Max(level, 1e-12) {
			samples[i].Flags |= 1
			found++
		} else if samples[i].Flags&2 != 0 {
			samples[i].Flags &^= 2
		} else {
			samples[i].Flags = 0
		}
	}
	return found, nil
}

// JoinNames returns the names of the samples that are spikes.
func JoinNames(samples []Sample, separator string) string {
	var names []string
	for _, sample := range samples {
		switch sample.Flags {
		case 0:
			continue
		case 1:
			names = append(names, sample.Name)
		default:
			names = append(names, "?")
		}
	}
	return strings.Join(names, separator)
}

