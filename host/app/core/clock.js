/** Times of day as the lists show them: always of one width, with milliseconds where things follow closely. */

const twoDigits = (number) => String(number).padStart(2, "0");

/**
 * @param {number} milliseconds since 1970
 * @returns {string} such as "14:03:27", in local time
 */
export function timeOfDay(milliseconds) {
    const time = new Date(milliseconds);
    return [time.getHours(), time.getMinutes(), time.getSeconds()].map(twoDigits).join(":");
}

/**
 * @param {number} milliseconds since 1970
 * @returns {string} such as "14:03:27.081", in local time
 */
export function exactTimeOfDay(milliseconds) {
    return `${timeOfDay(milliseconds)}.${String(new Date(milliseconds).getMilliseconds()).padStart(3, "0")}`;
}
