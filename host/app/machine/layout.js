/**
 * Where the parts of a region's diagram stand: states one below the other, steps to the next state between them, and
 * all longer ways in lanes beside them, downwards at the right and upwards at the left. Pure.
 *
 * @typedef {import("../core/protocol.js").Region} Region
 * @typedef {import("../core/protocol.js").Row} Row
 *
 * @typedef {object} Box
 * @property {string} state
 * @property {number} x
 * @property {number} y
 *
 * @typedef {object} Edge all rows that lead from one state to another
 * @property {string} from
 * @property {string} to
 * @property {Row[]} rows
 * @property {string} path of its line
 * @property {string} head path of its arrowhead
 *
 * @typedef {object} Layout
 * @property {number} width
 * @property {number} height
 * @property {Box[]} boxes
 * @property {Edge[]} edges
 * @property {Map<string, Row[]>} inner rows that leave their state as it is, by state
 */
export const boxWidth = 196;
export const boxHeight = 30;
const gap = 26;
const laneWidth = 12;
const edgePad = 8;
const corner = 6;
const mostPortStep = 7;
const sideStep = 26;

/**
 * @param {Region} region
 * @returns {Layout}
 */
export function layOut(region) {
    const states = statesOf(region);
    const pairs = pairsOf(region.rows.filter(({ to }) => to !== ""), states);
    const right = inLanes(pairs.filter(({ span }) => span > 1));
    const left = inLanes(pairs.filter(({ span }) => span < -1));
    const x = edgePad + laneWidth * (laneCount(left) + 1);
    const boxes = states.map((state, index) => ({ state, x, y: edgePad + index * (boxHeight + gap) }));
    const edges = [
        ...pairs.filter(({ span }) => Math.abs(span) === 1).map((pair) => straight(pair, boxes)),
        ...right.map((pair) => around(pair, boxes, 1, portsOf(right))),
        ...left.map((pair) => around(pair, boxes, -1, portsOf(left))),
    ];
    return {
        width: x + boxWidth + laneWidth * (laneCount(right) + 1) + edgePad,
        height: states.length * (boxHeight + gap) - gap + 2 * edgePad,
        boxes,
        edges,
        inner: new Map(states.map((state) => [state, region.rows.filter(({ from, to }) => from === state && to === "")])),
    };
}

// A state that only a row names is a state too. The initial one stands on top.
function statesOf({ initial, states, rows }) {
    const named = rows.flatMap(({ from, to }) => (to === "" ? [from] : [from, to]));
    return [...new Set([initial, ...states, ...named])];
}

function pairsOf(rows, states) {
    const pairs = new Map();
    for (const row of rows) {
        const key = `${row.from} ${row.to}`;
        const span = states.indexOf(row.to) - states.indexOf(row.from);
        if (span !== 0) {
            pairs.set(key, pairs.get(key) ?? { from: row.from, to: row.to, rows: [], span, top: 0, bottom: 0, lane: 0 });
            pairs.get(key).rows.push(row);
        }
    }
    for (const pair of pairs.values()) {
        const ends = [states.indexOf(pair.from), states.indexOf(pair.to)];
        pair.top = Math.min(...ends);
        pair.bottom = Math.max(...ends);
    }
    return [...pairs.values()];
}

// The shortest ways get the lanes next to the states; ways that share a height need lanes of their own.
function inLanes(pairs) {
    const placed = [];
    for (const pair of [...pairs].sort((one, other) => Math.abs(one.span) - Math.abs(other.span))) {
        const taken = placed
            .filter(({ top, bottom }) => top <= pair.bottom && pair.top <= bottom)
            .map(({ lane }) => lane);
        pair.lane = 0;
        while (taken.includes(pair.lane)) {
            ++pair.lane;
        }
        placed.push(pair);
    }
    return placed;
}

function laneCount(pairs) {
    return pairs.reduce((count, { lane }) => Math.max(count, lane + 1), 0);
}

function straight({ from, to, rows, span }, boxes) {
    const source = boxes.find(({ state }) => state === from);
    const target = boxes.find(({ state }) => state === to);
    const x = source.x + boxWidth / 2 + (span > 0 ? -sideStep : sideStep);
    const y0 = span > 0 ? source.y + boxHeight : source.y;
    const y1 = span > 0 ? target.y : target.y + boxHeight;
    const back = span > 0 ? -6 : 6;
    return {
        from,
        to,
        rows,
        path: `M${x} ${y0}V${y1 + back / 2}`,
        head: `M${x} ${y1}l-3.6 ${back}h7.2Z`,
    };
}

function around({ from, to, rows, lane }, boxes, side, ports) {
    const source = boxes.find(({ state }) => state === from);
    const target = boxes.find(({ state }) => state === to);
    const edgeOf = (box) => (side > 0 ? box.x + boxWidth : box.x);
    const laneX = edgeOf(source) + side * laneWidth * (lane + 1);
    const y0 = source.y + ports(from, to, from);
    const y1 = target.y + ports(from, to, to);
    const turn = y1 > y0 ? corner : -corner;
    return {
        from,
        to,
        rows,
        path:
            `M${edgeOf(source)} ${y0}H${laneX - side * corner}Q${laneX} ${y0} ${laneX} ${y0 + turn}` +
            `V${y1 - turn}Q${laneX} ${y1} ${laneX - side * corner} ${y1}H${edgeOf(target) + side * 3}`,
        head: `M${edgeOf(target)} ${y1}l${side * 6} -3.6v7.2Z`,
    };
}

/**
 * Where the lines of one side meet their states: spread over the height of each, so that no two lines cross on the
 * way. Those that come from above stand above the others; of them the outer ones are the lower, of the others the
 * upper.
 * @returns {(from: string, to: string, state: string) => number} measured from the state's upper edge
 */
function portsOf(pairs) {
    const order = (state) =>
        pairs
            .filter(({ from, to }) => from === state || to === state)
            .map((pair) => ({ pair, rank: (isAbove(pair, state) ? 0 : 1000) + (isAbove(pair, state) ? pair.lane : -pair.lane) }))
            .sort((one, other) => one.rank - other.rank)
            .map(({ pair }) => pair);
    return (from, to, state) => {
        const all = order(state);
        const at = all.findIndex((pair) => pair.from === from && pair.to === to);
        const step = Math.min(mostPortStep, (boxHeight - 10) / Math.max(1, all.length - 1));
        return boxHeight / 2 + step * (at - (all.length - 1) / 2);
    };
}

/** Whether a line's other end stands above this state. */
function isAbove({ from, to, span }, state) {
    return state === from ? span < 0 : state === to && span > 0;
}
