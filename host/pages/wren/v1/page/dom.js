/**
 * The few ways in which this page makes elements. Text only ever becomes a text node, so nothing that a payload
 * says can turn into markup.
 */
"use strict";
{
    const svgNamespace = "http://www.w3.org/2000/svg";

    /**
     * @param {string} name
     * @param {Record<string, string|null>} [attributes] those that are null are left out
     * @param {...(Node|string|null)} children texts become text nodes, null is left out
     * @returns {HTMLElement}
     */
    function element(name, attributes = {}, ...children) {
        const made = document.createElement(name);
        for (const [key, value] of Object.entries(attributes)) {
            if (value !== null) {
                made.setAttribute(key, value);
            }
        }
        made.append(...children.filter((child) => child !== null));
        return made;
    }

    /**
     * A text of the payload; its own letters decide in which direction it runs.
     * @param {string} name of the element
     * @param {string} text
     * @param {Record<string, string|null>} [attributes]
     * @returns {HTMLElement|null} null for an empty text
     */
    function textElement(name, text, attributes = {}) {
        return text === "" ? null : element(name, { dir: "auto", ...attributes }, text);
    }

    /**
     * A drawing that says nothing which the text beside it doesn't say too.
     * @param {readonly string[]} paths
     * @param {string} className
     * @returns {SVGElement}
     */
    function drawing(paths, className) {
        const svg = document.createElementNS(svgNamespace, "svg");
        svg.setAttribute("class", className);
        svg.setAttribute("viewBox", "0 0 24 24");
        svg.setAttribute("aria-hidden", "true");
        const lines = document.createElementNS(svgNamespace, "path");
        lines.setAttribute("d", paths.join(" "));
        svg.append(lines);
        return svg;
    }

    /**
     * A button that acts once for each deliberate press: the second half of a double click and a key that is held
     * down would otherwise land on whatever stands in its place after the page has changed.
     * @param {Record<string, string|null>} attributes
     * @param {() => void} press
     * @param {...(Node|string|null)} children
     * @returns {HTMLElement}
     */
    function button(attributes, press, ...children) {
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

    wrenPage.dom = { element, textElement, drawing, button };
}
