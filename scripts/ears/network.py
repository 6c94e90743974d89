"""The network: two hidden layers, trained with Adam in plain numpy, in float32 and one thread."""

import numpy

SIZES = (297, 96, 48, 1)
BANDS = 9


class Network:
    def __init__(self, seed, mean, deviation):
        r = numpy.random.default_rng(seed)
        self.mean, self.deviation = mean.astype("f4"), deviation.astype("f4")
        self.layers = [[(r.standard_normal((b, a)) * numpy.sqrt(2 / a)).astype("f4"),
                        numpy.zeros(b, "f4")] for a, b in zip(SIZES, SIZES[1:])]
        self.moments = [[numpy.zeros_like(p) for p in layer for _ in range(2)]
                        for layer in self.layers]
        self.steps = 0

    def scores(self, features):
        result = []
        for start in range(0, len(features), 16384):
            x = (features[start:start + 16384].astype("f4") - self.mean) / self.deviation
            for i, (weights, offsets) in enumerate(self.layers):
                x = x @ weights.T + offsets
                if i + 1 < len(self.layers):
                    numpy.maximum(x, 0, out=x)
            result.append(x[:, 0])
        return numpy.concatenate(result) if result else numpy.zeros(0, "f4")

    def step(self, x, labels, importance, rate, decay=2e-5):
        inputs = []
        for i, (weights, offsets) in enumerate(self.layers):
            inputs.append(x)
            x = x @ weights.T + offsets
            if i + 1 < len(self.layers):
                numpy.maximum(x, 0, out=x)
        odds = numpy.clip(x[:, 0], -30, 30)
        slope = ((1 / (1 + numpy.exp(-odds)) - labels) * importance / len(labels)).astype("f4")
        slope = slope[:, None]
        self.steps += 1
        for i in reversed(range(len(self.layers))):
            weights, offsets = self.layers[i]
            changes = (slope.T @ inputs[i] + decay * weights, slope.sum(axis=0))
            if i > 0:
                slope = (slope @ weights) * (inputs[i] > 0)
            for j, change in enumerate(changes):
                first, second = self.moments[i][2 * j], self.moments[i][2 * j + 1]
                first += 0.1 * (change - first)
                second += 0.001 * (change * change - second)
                fair = numpy.sqrt(1 - 0.999 ** self.steps) / (1 - 0.9 ** self.steps)
                self.layers[i][j] -= rate * fair * first / (numpy.sqrt(second) + 1e-8)

    def train(self, features, labels, importance, epochs, rate, seed, batch=512):
        r = numpy.random.default_rng(seed)
        count = len(labels)
        total = epochs * (count // batch)
        done = 0
        for _ in range(epochs):
            order = r.permutation(count)
            for start in range(0, count - batch + 1, batch):
                some = order[start:start + batch]
                x = features[some].astype("f4")
                # Every microphone has its own tilt, of which there can be no enough.
                tilt = r.standard_normal((batch, BANDS)).astype("f4") * (2.5 / 30)
                x += numpy.tile(tilt, SIZES[0] // BANDS)
                x = (x - self.mean) / self.deviation
                now = rate * 0.5 * (1 + numpy.cos(numpy.pi * done / total))
                self.step(x, labels[some], importance[some], now)
                done += 1

    def flat(self):
        """As the detector wants them, for features as they are."""
        first, offsets = self.layers[0]
        plain = first / self.deviation
        parts = [plain.ravel(), offsets - plain @ self.mean]
        for weights, offsets in self.layers[1:]:
            parts += [weights.ravel(), offsets]
        return numpy.concatenate(parts).astype("f4")


def trained(features, labels, seed):
    """Three rounds: on some of what is no blow, then also on what was mistaken for one."""
    r = numpy.random.default_rng(seed)
    blows = numpy.flatnonzero(labels == 1)
    others = numpy.flatnonzero(labels == 0)
    sample = features[r.permutation(len(labels))[:20000]].astype("f4")
    network = Network(seed, sample.mean(axis=0), sample.std(axis=0) + 0.05)
    chosen = r.permutation(others)[:max(len(blows), 60000)]
    hard = numpy.zeros(0, int)
    for turn, (epochs, rate) in enumerate(((5, 2e-3), (5, 1.5e-3), (8, 1e-3))):
        those = numpy.concatenate([blows, chosen, hard, hard])
        network.train(features[those], labels[those].astype("f4"), numpy.ones(len(those), "f4"),
                      epochs, rate, seed + turn)
        scores = network.scores(features[others])
        print(f"round {turn + 1}: {len(blows)} blows, {len(chosen) + 2 * len(hard)} others; "
              f"{(scores > 0).sum()} others and "
              f"{(network.scores(features[blows]) < 0).sum()} blows mistaken", flush=True)
        hard = others[scores > -3]
        chosen = r.permutation(others)[:min(len(others), 2 * max(len(blows), 60000))]
    return network
