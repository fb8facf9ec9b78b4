/**
 * The few ways in which this page makes elements. Text only ever becomes a text node, so nothing that arrives from
 * the module or the service can turn into markup.
 */
const svgNamespace = "http://www.w3.org/2000/svg";

/**
 * @param {string} name
 * @param {Record<string, string|null>} [attributes] those that are null are left out
 * @param {...(Node|string|null)} children texts become text nodes, null is left out
 * @returns {HTMLElement}
 */
export function element(name, attributes = {}, ...children) {
    return filled(document.createElement(name), attributes, children);
}

/**
 * The same for a part of a drawing.
 * @param {string} name
 * @param {Record<string, string|number|null>} [attributes]
 * @param {...(Node|string|null)} children
 * @returns {SVGElement}
 */
export function svg(name, attributes = {}, ...children) {
    return filled(document.createElementNS(svgNamespace, name), attributes, children);
}

/**
 * A drawing that says nothing which the text beside it doesn't say too.
 * @param {readonly string[]} paths on a field of 24 by 24
 * @returns {SVGElement}
 */
export function icon(paths) {
    const lines = paths.map((path) => svg("path", { d: path }));
    return svg("svg", { class: "icon", viewBox: "0 0 24 24", "aria-hidden": "true" }, ...lines);
}

/**
 * A button that acts once for each deliberate press: the second half of a double click and a key that is held down
 * would otherwise land on whatever the answer has put in its place.
 * @param {Record<string, string|null>} attributes
 * @param {() => void} press
 * @param {...(Node|string|null)} children
 * @returns {HTMLButtonElement}
 */
export function button(attributes, press, ...children) {
    const made = element("button", { type: "button", ...attributes }, ...children);
    made.addEventListener("click", (event) => {
        if (event.detail < 2) {
            press();
        }
    });
    made.addEventListener("keydown", (event) => {
        if (event.repeat && (event.key === "Enter" || event.key === " ")) {
            event.preventDefault();
        }
    });
    return made;
}

/**
 * A form field with its label.
 * @param {string} label
 * @param {HTMLElement} control
 * @param {string|null} [hint]
 * @returns {HTMLElement}
 */
export function field(label, control, hint = null) {
    control.id = `field-${++fields}`;
    return element("div", { class: "field", title: hint || null }, element("label", { for: control.id }, label), control);
}
let fields = 0;

/** Sets an attribute, or takes it away for null; leaves it alone where nothing changes. */
export function setAttribute(node, name, value) {
    if (value === null) {
        node.removeAttribute(name);
    } else if (node.getAttribute(name) !== value) {
        node.setAttribute(name, value);
    }
}

/** Writes a text, unless it stands there already: a live region would read it out again. */
export function setText(node, text) {
    if (node.textContent !== text) {
        node.textContent = text;
    }
}

function filled(made, attributes, children) {
    for (const [key, value] of Object.entries(attributes)) {
        if (value !== null) {
            made.setAttribute(key, value);
        }
    }
    made.append(...children.filter((child) => child !== null));
    return made;
}
