// What is measured, and the target of each measure, in the order of the table.
//
// A row's value is the median over its rounds [ours, theirs]: of ours / theirs, of ours - theirs where
// `difference` is set, of ours alone where `alone` is set; in `unit`. `most` is the target.
export const ROWS = [
  { measure: 'call-many', what: 'getModemLogStatus(), 64 in flight',
    against: 'bare Node-API addon', most: 1.1 },
  { measure: 'call-single', what: '… one after the other', against: 'bare Node-API addon', most: 1.05 },
  { measure: 'bus', what: '… over D-Bus', against: 'bare Node-API addon over sd-bus', most: 1.05 },
  { measure: 'bus-switch', what: 'a switch over D-Bus that changes',
    against: 'one that does not', most: 1.3 },
  { measure: 'items', what: 'arguments → items, 6 scalars each',
    against: 'what is asked for, alone', most: 1.05 },
  { measure: 'items-lists', what: 'arguments → items, 3 lists of 6',
    against: 'what is asked for, alone', most: 1.05 },
  { measure: 'items-growth', what: 'items: 100,000', against: '1,000, per item', most: 1.1 },
  { measure: 'text', what: 'GetJsonParams, 10,000 parameters', against: 'rapidjson Writer', most: 1.3 },
  { measure: 'text-growth', what: '… 100,000 parameters', against: '1,000, per parameter', most: 1.1 },
  { measure: 'reply', what: 'reply → object, 10,000 members',
    against: 'jsoncpp parse + bare loop', most: 1.12 },
  { measure: 'reply-growth', what: '… 100,000 comments, numbers, …', against: '1,000 of each', most: 1.3 },
  { measure: 'replies-growth', what: 'replies: 100,000', against: '1,000, per reply', most: 1.1 },
  { measure: 'replies-million', what: 'replies: 1,000,000', against: '10,000, per reply', most: 1.2 },
  { measure: 'log-suppressed', what: 'log line below the level',
    against: 'empty variadic call', difference: true, unit: 'ns', most: 5 },
  { measure: 'log-file', what: 'log line to a file', against: 'spdlog, flushed per line', most: 1 },
  { measure: 'memory-kept', what: 'memory kept of a million calls',
    against: 'bare Node-API addon', difference: true, unit: 'bytes', most: 0 },
  { measure: 'load', what: 'loading the package', against: 'package of an empty addon', difference: true,
    unit: 'ms', most: 1.7 },
  { measure: 'size', what: 'the packed module', against: 'itself', alone: true, unit: 'kB', most: 300 },
  { measure: 'command', what: 'zelklog modem status', against: 'node -e 0', most: 1.5 },
  { measure: 'handler', what: 'testing kit: a call to a handler',
    against: 'the embedded service', most: 2.2 },
  { measure: 'request', what: '… a request past the module', against: 'the same call', most: 1.2 },
  { measure: 'handlers-in-flight', what: '… 1,000 handlers of 1 ms',
    against: 'a fourth of their own time', most: 1.2 },
  { measure: 'handlers-kept', what: '… memory kept of a million calls',
    against: 'the embedded service', difference: true, unit: 'bytes', most: 0 },
];

function quantile(values, fraction) {
  const sorted = [...values].sort((a, b) => a - b);
  const position = fraction * (sorted.length - 1);
  const low = Math.floor(position);
  return sorted[low] + (sorted[Math.ceil(position)] - sorted[low]) * (position - low);
}

const median = (values) => quantile(values, 0.5);

function valueOf(row, [ours, theirs]) {
  if (row.alone) {
    return ours;
  }
  return row.difference ? ours - theirs : ours / theirs;
}

// The row with its value, its noise (half of the range in which the middle half of the rounds lies) and its
// verdict.
export function evaluate(row, rounds) {
  const values = rounds.map((round) => valueOf(row, round));
  const result = {
    ...row,
    unit: row.unit ?? '×',
    ours: median(rounds.map(([ours]) => ours)),
    theirs: rounds[0].length > 1 ? median(rounds.map(([, theirs]) => theirs)) : undefined,
    value: median(values),
    noise: (quantile(values, 0.75) - quantile(values, 0.25)) / 2,
  };
  return { ...result, verdict: judge(result) };
}

// Whether the noise is too large: more than a tenth of the value, unless the target is 0.
export const isNoisy = ({ value, noise, most }) => most !== 0 && noise > Math.abs(value) / 10;

// 'ok' within the target, 'MISS' beyond it by more than the noise, 'unsure' between.
function judge({ value, noise, most }) {
  if (value <= most) {
    return 'ok';
  }
  return value - noise > most ? 'MISS' : 'unsure';
}

const number = (value, unit) => value.toFixed(unit === 'bytes' || unit === 'kB' ? 0 : 2);

// Their heads, how they are aligned, and their cells.
const COLUMNS = {
  what: ['measure', 'padEnd', ({ what }) => what],
  against: ['against', 'padEnd', ({ against }) => against],
  value: ['value', 'padStart', ({ value, unit }) => `${number(value, unit)} ${unit}`],
  noise: ['noise', 'padStart', ({ noise, unit }) => `±${number(noise, unit)}`],
  target: ['target', 'padEnd', ({ most, unit }) => `≤ ${most} ${unit}`],
  verdict: ['', 'padEnd', ({ verdict }) => verdict],
};

export function print(results, names = Object.keys(COLUMNS)) {
  const columns = names.map((name) => COLUMNS[name]).map(([head, pad, cell]) => {
    const cells = [head, ...results.map(cell)];
    const width = Math.max(...cells.map(({ length }) => length));
    return [cells[0], '-'.repeat(width), ...cells.slice(1)].map((text) => text[pad](width));
  });
  for (const line of columns[0].keys()) {
    console.log(columns.map((cells) => cells[line]).join('  ').trimEnd());
  }
}
