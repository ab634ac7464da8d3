// Draws the report from the data in the page.
'use strict';

const data = JSON.parse(document.getElementById('data').textContent);

// --- Elements. What the data says goes in as text, never as markup. ---

function make(tag, properties, ...children) {
    const element = Object.assign(document.createElement(tag), properties);
    element.append(...children);
    return element;
}

const find = (selector) => document.querySelector(selector);
const isNumber = (value) => typeof value === 'number';
const fixed = (value, digits) => (isNumber(value) ? value.toFixed(digits) : value === null ? '–' : String(value));
const short = (value) => (isNumber(value) ? String(Number(value.toPrecision(4))) : String(value));
const grouped = (value) => String(value).replace(/\B(?=(\d{3})+$)/g, '\u202f');

// rows: arrays of texts, numbers already as text; numeric: the columns that are numbers.
function table(heads, rows, numeric = []) {
    const cells = (tag, texts) =>
        texts.map((text, i) => make(tag, {className: numeric.includes(i) ? 'number' : ''}, text));
    return make('table', {},
        make('thead', {}, make('tr', {}, ...cells('th', heads))),
        make('tbody', {}, ...rows.map((row) => make('tr', {}, ...cells('td', row)))));
}

// --- Downloads ---

function csvText(rows) {
    const field = (value) => {
        const text = value === null || value === undefined ? '' : String(value);
        return /[",\n]/.test(text) ? '"' + text.replace(/"/g, '""') + '"' : text;
    };
    return rows.map((row) => row.map(field).join(',')).join('\n') + '\n';
}

function downloadButton(file, rows) {
    const button = make('button', {type: 'button'}, 'Download ' + file);
    button.onclick = () => {
        const link = make('a', {download: file, href: URL.createObjectURL(new Blob([csvText(rows())], {type: 'text/csv'}))});
        link.click();
        setTimeout(() => URL.revokeObjectURL(link.href), 1000);
    };
    return button;
}

// --- Charts ---

const plots = [];

// Texts beside the points of a dataset that has texts, an array of [index, text, dx, dy, color]; dx and dy in pixels,
// without a color the dataset's own.
const pointTexts = {
    id: 'pointTexts',
    afterDatasetsDraw(chart) {
        const context = chart.ctx;
        const area = chart.chartArea;
        context.save();
        context.font = '11px ' + Chart.defaults.font.family;
        context.textBaseline = 'middle';
        chart.data.datasets.forEach((dataset, index) => {
            for (const [point, text, dx, dy, color] of dataset.texts || []) {
                const {x, y} = chart.getDatasetMeta(index).data[point];
                if (x < area.left || x > area.right || y < area.top || y > area.bottom) continue;
                context.fillStyle = color || dataset.borderColor;
                context.textAlign = dx < 0 ? 'right' : dx > 0 ? 'left' : 'center';
                context.fillText(text, x + dx, y + dy);
            }
        });
        context.restore();
    },
};

const toPoints = (pairs) => pairs.filter(([x, y]) => isNumber(x) && isNumber(y)).map(([x, y]) => ({x, y}));

// A line through points, which are {x, y}.
function line(label, points, color, more) {
    return {label, data: points, borderColor: color, backgroundColor: color, borderWidth: 1.8, pointRadius: 0,
            pointHitRadius: 4, tension: 0, ...more};
}
const dashed = {borderDash: [5, 4], borderWidth: 1.4};
const dots = {showLine: false, pointRadius: 4, pointStyle: 'circle'};
const cross = {...dots, pointStyle: 'cross', pointRadius: 6};

function axis(title, colors, more = {}) {
    const {ticks, ...rest} = more;
    return {
        type: 'linear', title: {display: true, text: title, color: colors.soft}, grid: {color: colors.line, borderColor: colors.grey},
        ticks: {color: colors.soft, maxRotation: 0, autoSkipPadding: 16, ...ticks}, ...rest,
    };
}

// A chart whose x and y have the same scale gets the height that makes it so.
function squareUp(chart) {
    const {x, y} = chart.scales;
    const {width, height} = chart.chartArea;
    const wanted = width * (y.max - y.min) / (x.max - x.min);
    chart.canvas.parentElement.style.height = Math.round(chart.height + wanted - height) + 'px';
    chart.resize();
}

function themeColors() {
    const style = getComputedStyle(document.documentElement);
    const names = ['page', 'line', 'text', 'soft', 'blue', 'orange', 'green', 'violet', 'red', 'grey'];
    return Object.fromEntries(names.map((name) => [name, style.getPropertyValue('--' + name).trim()]));
}

// A line for what is drawn as one, and the point where there are only points.
function legendLabels(chart) {
    return Chart.defaults.plugins.legend.labels.generateLabels(chart).filter(({text}) => text !== '').map((label) => {
        const dataset = chart.data.datasets[label.datasetIndex];
        return {...label, pointStyle: dataset.showLine === false ? dataset.pointStyle : 'line'};
    });
}

function draw(plot) {
    if (plot.chart) plot.chart.destroy();
    const colors = themeColors();
    const {datasets, x, y, square} = plot.build(colors);
    plot.chart = new Chart(plot.canvas, {
        type: 'line',
        data: {datasets},
        plugins: [pointTexts],
        options: {
            // Only points whose x rises may skip parsing; the lines of a square diagram go both ways.
            animation: false, responsive: true, maintainAspectRatio: false, parsing: Boolean(square), normalized: !square,
            devicePixelRatio: Math.max(2, devicePixelRatio), interaction: {mode: 'nearest', intersect: false},
            scales: {x: axis(x.title, colors, x.more), y: axis(y.title, colors, y.more)},
            plugins: {
                legend: {position: 'bottom', align: 'start',
                         labels: {color: colors.text, usePointStyle: true, boxHeight: 8, generateLabels: legendLabels}},
                tooltip: {callbacks: {title: () => '', label: ({dataset, raw}) => plot.tip(dataset.label, raw)}},
            },
        },
    });
    if (square) squareUp(plot.chart);
}

const drawAll = () => plots.forEach(draw);

// build(colors) gives datasets and axes; tip(label, point) the text of a tooltip.
function addPlot(name, caption, build, tip, ...buttons) {
    const figure = find(`[data-plot=${name}]`);
    const canvas = make('canvas', {role: 'img', ariaLabel: caption});
    figure.append(make('div', {className: 'canvas'}, canvas), make('figcaption', {}, caption), ...buttons);
    plots.push({canvas, build, tip});
}

// --- Accuracy ---

const fileName = (path) => path.split('/').pop();
// As the field writes it.
const symbols = (text) => text.replace(/\bd(?=E2000|C\b)/g, 'Δ').replace('cd/m2', 'cd/m²');

function showRows({rows, panel, targetText, warnings}) {
    const judged = rows.filter((row) => row.pass !== null);
    const failed = judged.filter((row) => !row.pass).length;
    const verdict = failed === 0 ? `All ${judged.length} limits are kept.` : `${failed} of ${judged.length} limits fail.`;
    find('.limits').append(
        make('p', {className: failed === 0 ? 'pass' : 'error'}, verdict),
        make('div', {className: 'fit'}, table(['Figure', 'Value', 'Limit', ''], judged.map(({figure, value, limit, pass}) =>
            [symbols(figure), value, limit, make('span', {className: pass ? 'pass' : 'error'}, pass ? 'pass' : 'FAIL')]), [1])),
        ...warnings.map((text) => make('p', {className: 'warning'}, symbols(text) + '.')),
        make('p', {className: 'note'}, `Predicted for the panel that ${fileName(panel)} measures, ` +
            (data.session.name === '' ? 'in standard mode' : `as ${data.session.name} leaves display 0`) + `. Target: ${targetText}.`));
    find('.reported').append(make('div', {className: 'fit'}, table(['Reported without a limit', 'Value'],
        rows.filter((row) => row.pass === null).map(({figure, value}) => [symbols(figure), symbols(value)]), [1])));
}

function showPatches({colorChecker, colorCheckerData, target, limitValues}) {
    const css = (rgb) => `color(${target.name} ${rgb.join(' ')})`;
    find('.patches').append(...colorChecker.map(({name, targetRgb, shownRgb, deltaE2000, beyondPanel, clippedToTarget}) => {
        const isOver = !beyondPanel && deltaE2000 > limitValues.colorCheckerLargest;
        const half = (rgb) => {
            const element = make('div', {});
            element.style.background = css(rgb);
            return element;
        };
        return make('figure', {}, make('div', {className: 'swatch'}, half(targetRgb), half(shownRgb)),
            make('figcaption', {}, name + (clippedToTarget ? ' †' : '') + (beyondPanel ? ' ‡' : ''), make('br', {}),
                make('span', {className: isOver ? 'error' : ''}, 'ΔE2000 ' + deltaE2000.toFixed(2))));
    }));
    find('#accuracy > .note').textContent = 'Patches: ' + colorCheckerData + '. † Clipped to the target’s gamut. ‡ Beyond the panel at the ' +
        'luminance of white: not counted above. Colours here are only as right as the screen that shows them.';
}

function showAccuracy() {
    const {accuracy} = data;
    if (accuracy === null) {
        find('#accuracy').replaceChildren(find('#accuracy h2'), make('p', {className: 'note'},
            'Not predicted: the option --panel PANEL.ti3, a measurement of the native panel, adds this part.'));
        return;
    }
    showRows(accuracy);
    showPatches(accuracy);
    const {greys, target, limitValues, colorTemperatures, primaries} = accuracy;
    const level = {title: 'coded grey level', more: {min: 0, max: 1}};
    const overLevel = (label, key, color) => line(label, toPoints(greys.map((grey) => [grey.level, grey[key]])), color, {pointRadius: 2});
    const across = (label, y, color, from = 0) => line(label, [{x: from, y}, {x: Math.abs(from) || 1, y}], color, dashed);
    const levelTip = (label, {x, y}) => `${label}: ${y.toFixed(3)} at ${short(x)}`;
    addPlot('greys', 'Grey tracking (predicted): difference of 33 greys from the target.',
        (colors) => ({
            datasets: [overLevel('ΔE2000', 'deltaE2000', colors.blue), overLevel('ΔC', 'deltaC', colors.orange),
                       across('limit of ΔC', limitValues.greyChroma, colors.red)],
            x: level, y: {title: 'difference', more: {min: 0}},
        }), levelTip);
    addPlot('gammaOverLevel', `Gamma at each level (predicted), 10 to 90 %, with the limits around the target’s ${short(target.gamma)}.`,
        (colors) => ({
            datasets: [overLevel('gamma', 'gamma', colors.blue), across('target', target.gamma, colors.green),
                       across('limits', target.gamma - limitValues.gamma, colors.red),
                       across('', target.gamma + limitValues.gamma, colors.red)],
            x: level, y: {title: 'gamma', more: {suggestedMin: 2, suggestedMax: 2.4}},
        }), levelTip);
    const percent = (value) => (isNumber(value) ? value.toFixed(1) + ' %' : 'unknown');
    addPlot('gamut', `CIE 1976 u′v′ diagram (predicted): the shown gamut covers ${percent(accuracy.coverageUv)} of the target’s area here, ` +
        `${percent(accuracy.coverageXy)} in xy.`,
        (colors) => diagram(colors, uvPlane, [
            line('shown white', toPoints([uvPlane.point(accuracy.white.xy)]), colors.red, {...dots, pointRadius: 3}),
            line('target’s white', toPoints([uvPlane.point(target.white)]), colors.text, cross),
            line('shown', closed(primaries.slice(0, 3).map(({shownXyz: [x, y, z]}) => uvPlane.point([x / (x + y + z), y / (x + y + z)]))),
                colors.blue, {}),
            line('target', closed([target.red, target.green, target.blue].map(uvPlane.point)), colors.green, dashed),
        ]), (label, {x, y}) => `${label}: u′ ${x.toFixed(4)}, v′ ${y.toFixed(4)}`);
    const controls = (key, colors) => colorTemperatures.map(({operation, levels}, i) =>
        line(operation, toPoints(levels.map((row) => [row.level, row[key]])), [colors.blue, colors.orange][i], {pointRadius: 2}));
    const controlLevel = {title: 'level', more: {min: -100, max: 100}};
    const neutral = colorTemperatures.map(({operation, monotone, level0DeltaE2000}) =>
        `${operation} is ${{true: 'monotone', false: 'not monotone', null: 'not known to be monotone'}[monotone]}, its level 0 ΔE2000 ${fixed(level0DeltaE2000, 2)} from neutral`).join('; ');
    addPlot('kelvin', `Correlated colour temperature of white in standard mode (predicted, simulated libraries): ${neutral}.`,
        (colors) => ({datasets: controls('kelvin', colors), x: controlLevel, y: {title: 'CCT, K', more: {ticks: {callback: grouped}}}}),
        (label, {x, y}) => `${label} ${x}: ${Math.round(y)} K`);
    addPlot('duv', 'Duv of white (predicted, simulated libraries): positive above the Planckian locus, greenish.',
        (colors) => ({datasets: [...controls('duv', colors), across('Planckian locus', 0, colors.text, -100)],
                      x: controlLevel, y: {title: 'Duv', more: {}}}),
        (label, {x, y}) => `${label} ${x}: ${y.toFixed(4)}`);
}

// --- Summary ---

const colorText = (value) => '#' + (value & 0xffffff).toString(16).toUpperCase().padStart(6, '0');

function showSummary() {
    const {calibration, session} = data;
    const panel = session.state['panel and calibration, as last read'];
    const service = (session.state['display 0'] || {}).service;
    const blocks = (complete) =>
        calibration.blocks.filter((block) => block.complete === complete).map((block) => block.name).join(', ') || 'none';
    const rows = [
        ['Calibration file', calibration.file],
        ['Panel', panel.name === undefined ? 'not read in this session' : `${panel.name.replace(/\\n$/, '')} (${panel.identified})`],
        ['Complete blocks', blocks(true)],
        ['Short or missing blocks', blocks(false)],
    ];
    if (calibration.endPoints) {
        const [warm, cold] = calibration.endPoints.map(colorText);
        rows.push(['Unlimited colour temperature', `${warm} at the warm end (−100), ${cold} at the cold end (+100)`]);
    }
    if (calibration.eyeCareKelvin) {
        const [highest, lowest] = calibration.eyeCareKelvin;
        rows.push(['Eye care', `${short(highest)} K (level 0) to ${short(lowest)} K (level 100)`]);
    }
    rows.push(['Session', (session.name || 'short built-in session') + `, ${session.steps.length} steps`]);
    if (service) {
        rows.push(['At its end', `screen mode ${session.state['screen mode']}, ` +
            `unlimited level ${service['unlimited colour temperature level']}, eye-care level ${service['eye-care level']}`]);
    }
    find('#title').textContent = calibration.file;
    document.title = calibration.file + ' – display calibration report';
    find('#summary dl').append(...rows.flatMap(([name, text]) => [make('dt', {}, name), make('dd', {}, text)]));
}

function showFindings() {
    const place = find('.findings');
    const {findings} = data.calibration;
    if (findings.length === 0) {
        place.append(make('p', {className: 'note'}, 'None: the library uses the file as it reads.'));
        return;
    }
    const rows = findings.map((finding) => [
        make('span', {className: finding.severity}, finding.severity),
        finding.line > 0 ? String(finding.line) : '',
        finding.block + (finding.value === null ? '' : ' ' + finding.value),
        finding.what, finding.expected,
    ]);
    place.append(make('div', {className: 'scroll'}, table(['Severity', 'Line', 'Block, value', 'Found', 'Expected'], rows, [1])));
}

// --- Gamma ---

const kEntries = 4096;
const power = (i) => (i / kEntries) ** (1 / 2.2);

function showGamma() {
    const {calibrated, tuned} = data.gamma;
    const indices = [...Array(kEntries).keys()].filter((i) => i < 64 ? i % 4 === 0 : i % 16 === 0 || i === kEntries - 1);
    const curve = (valueAt) => toPoints(indices.map((i) => [i / kEntries, valueAt(i)]));
    const given = (colors, from) =>
        [['calibrated', calibrated, colors.blue, {}], ['tuned', tuned, colors.orange, {}]]
            .filter(([, values]) => values !== null)
            .map(([label, values, color, more]) =>
                line(label, curve((i) => (isNumber(values[i]) ? values[i] - from(i) : null)), color, more));
    const tip = (label, {x, y}) => `${label}: ${y.toFixed(4)} at input ${x.toFixed(4)}`;
    const input = {title: 'input level (entry / 4096)', more: {min: 0, max: 1}};
    const nothing = calibrated === null && tuned === null ? ' The file gives no complete gamma table.' : '';

    addPlot('gamma', 'Gamma tables of the calibration (simulated), output over linear input, both as parts of full scale.' + nothing,
        (colors) => ({
            datasets: [...given(colors, () => 0), line('1/2.2', curve(power), colors.green, dashed),
                       line('identity', curve((i) => i / kEntries), colors.grey, dashed)],
            x: input, y: {title: 'output', more: {min: 0, suggestedMax: 1}},
        }), tip,
        downloadButton('gamma.csv', () => [['input', 'calibrated', 'tuned', 'power_1_over_2_2', 'identity'],
            ...[...Array(kEntries).keys()].map((i) =>
                [i / kEntries, calibrated && calibrated[i], tuned && tuned[i], power(i), i / kEntries])]));
    addPlot('gammaToPower', 'Difference of each table from 1/2.2 (simulated), in parts of full scale.',
        (colors) => ({
            datasets: [...given(colors, power), line('1/2.2', [{x: 0, y: 0}, {x: 1, y: 0}], colors.green, dashed)],
            x: input, y: {title: 'output − 1/2.2', more: {}},
        }), tip);
}

// --- Chromaticity ---

const closed = (points) => toPoints([...points, points[0]]);
const xyTip = (label, {x, y}) => `${label}: x ${x.toFixed(4)}, y ${y.toFixed(4)}`;

function stageWhites() {
    return data.chromaticity.whites.map((row, i) => ({...row, number: i + 1})).filter((row) => row.xy !== null);
}

// The whites, with their numbers: in the dot, or beside it when several coincide.
function whiteDots(colors, withTexts) {
    const whites = stageWhites();
    const near = (a, b) => Math.hypot(a.xy[0] - b.xy[0], a.xy[1] - b.xy[1]) < 0.002;
    const texts = whites.map((white, i) => {
        const numbers = whites.filter((other) => near(white, other)).map((other) => other.number);
        if (numbers.length === 1) return [i, String(white.number), 0, 1, colors.page];
        return [i, numbers[0] === white.number ? numbers.join(', ') : '', -8, -10];
    });
    return line('white after stages 1 to 4', toPoints(whites.map((white) => white.xy)), colors.red,
        withTexts ? {...dots, pointRadius: 7, texts} : dots);
}

function planckianLine(colors, plane, kelvins, dx, dy) {
    const points = data.chromaticity.planckianLocus;
    const texts = points.map(([kelvin], i) => [i, kelvin + ' K', dx, dy]).filter(([i]) => kelvins.includes(points[i][0]));
    const marks = points.map(([kelvin]) => (kelvins.includes(kelvin) ? 2.5 : 0));
    return line('Planckian locus', toPoints(points.map((p) => plane.point(p.slice(1)))), colors.text,
        {borderWidth: 1.2, pointRadius: marks, texts});
}

// point: from x, y to the diagram's coordinates; side: where the wavelength of a point of the locus is written.
const xyPlane = {
    point: (xy) => xy,
    side: (nm) => (nm < 490 ? [-6, 0] : nm === 520 ? [0, -9] : [7, nm < 520 ? 2 : -4]),
    x: {title: 'x', more: {min: 0, max: 0.8}}, y: {title: 'y', more: {min: 0, max: 0.9}},
};
const uvPlane = {
    point: ([x, y]) => [4 * x / (-2 * x + 12 * y + 3), 9 * y / (-2 * x + 12 * y + 3)],
    side: (nm) => (nm < 490 ? [-6, 2] : nm < 520 ? [7, 2] : [0, -9]),
    x: {title: 'u′', more: {min: 0, max: 0.7}}, y: {title: 'v′', more: {min: 0, max: 0.6}},
};

// A chromaticity diagram with datasets before the loci.
function diagram(colors, plane, datasets) {
    const {spectralLocus} = data.chromaticity;
    const labelled = [460, 470, 480, 490, 500, 510, 520, 540, 560, 580, 600, 620, 700];
    const texts = spectralLocus.map(([nm], i) => [i, String(nm), ...plane.side(nm)]).filter(([i]) => labelled.includes(spectralLocus[i][0]));
    return {
        datasets: [
            ...datasets.filter((dataset) => dataset.data.length > 0),
            planckianLine(colors, plane, [], 0, 0),
            line('spectral locus, nm', closed(spectralLocus.map((p) => plane.point(p.slice(1)))), colors.soft, {texts}),
        ],
        x: plane.x, y: plane.y, square: true,
    };
}

function buildDiagram(colors) {
    const {srgb, panel, d65} = data.chromaticity;
    return diagram(colors, xyPlane, [
        whiteDots(colors, false),
        line('D65', toPoints([d65]), colors.text, cross),
        line('panel', closed(panel), colors.blue, {}),
        line('sRGB', closed(srgb), colors.green, dashed),
    ]);
}

function sweepLine(label, rows, color, levels) {
    const texts = rows.map(([level], i) => [i, (level > 0 ? '+' : level < 0 ? '−' : '') + Math.abs(level), -7, -7])
        .filter(([i]) => levels.includes(rows[i][0]));
    const marks = rows.map(([level]) => (level % 20 === 0 ? 2 : 0));
    return line(label, toPoints(rows.map((row) => row.slice(1))), color, {texts, pointRadius: marks});
}

// A square of the diagram around the whites.
function windowOfWhites() {
    const {unlimited, eyeCare, d65} = data.chromaticity;
    const points = toPoints([d65, ...stageWhites().map((white) => white.xy),
                             ...[...unlimited, ...eyeCare].map((row) => row.slice(1))]);
    const range = (values) => [Math.min(...values), Math.max(...values)];
    const [x0, x1] = range(points.map((p) => p.x));
    const [y0, y1] = range(points.map((p) => p.y));
    const half = Math.ceil((Math.max(x1 - x0, y1 - y0) / 2 + 0.015) * 100) / 100;
    const around = (middle) => ({min: Math.round((middle - half) * 100) / 100, max: Math.round((middle + half) * 100) / 100});
    return {x: around((x0 + x1) / 2), y: around((y0 + y1) / 2)};
}

function showColor() {
    const {assumptions, unlimited, eyeCare, d65} = data.chromaticity;
    const area = windowOfWhites();
    find('.assumptions').append(...assumptions.map((text) => make('p', {className: 'warning'}, text)));
    addPlot('diagram', 'CIE 1931 xy chromaticity diagram (2° observer), simulated: what the panel and sRGB can show, and the whites.',
        buildDiagram, xyTip);
    addPlot('whites', 'Around white (simulated): where the calibrated white goes over the levels of both colour temperatures, a dot ' +
        'every 20 levels, and the white after each stage as the session leaves it.',
        (colors) => ({
            datasets: [
                whiteDots(colors, true),
                line('D65', toPoints([d65]), colors.text, cross),
                sweepLine('unlimited, −100 to +100', unlimited, colors.blue, [-100, 100]),
                sweepLine('eye care, 0 to 100', eyeCare, colors.orange, [100]),
                planckianLine(colors, xyPlane, [2000, 2500, 3000, 4000, 5000, 6500, 8000, 10000], 8, 7),
            ].filter((dataset) => dataset.data.length > 0),
            x: {title: 'x', more: area.x}, y: {title: 'y', more: area.y}, square: true,
        }), xyTip,
        downloadButton('sweep.csv', () => [['temperature', 'level', 'x', 'y'],
            ...unlimited.map((row) => ['unlimited', ...row]), ...eyeCare.map((row) => ['eye care', ...row])]));
    const {whites} = data.chromaticity;
    find('.whites').append(make('div', {className: 'fit'}, table(['', 'Stage', 'x', 'y', 'CCT, K'],
        whites.map(({stage, xy, kelvin}, i) => [String(i + 1), stage, fixed(xy && xy[0], 4), fixed(xy && xy[1], 4),
                                                kelvin === null ? '–' : grouped(kelvin)]), [2, 3, 4])));
}

// --- Matrices ---

function showMatrices() {
    const place = find('.matrices');
    if (data.matrices.length === 0) {
        place.append('The session never made display 0 known to the service.');
        return;
    }
    place.append(...data.matrices.map(({stage, matrix, largestOutput}) => {
        const rows = [0, 3, 6].map((i) => make('tr', {}, ...matrix.slice(i, i + 3).map((e) => make('td', {className: 'number'}, fixed(e, 6)))));
        return make('div', {className: 'card'}, make('h3', {}, stage[0].toUpperCase() + stage.slice(1)),
            make('table', {}, make('tbody', {}, ...rows)), make('p', {}, `Largest output ${fixed(largestOutput, 6)}`));
    }));
}

// --- Session ---

function pictureFigure(word, number) {
    const picture = number === null ? null : data.session.pictures[number];
    if (picture === null) return make('figure', {}, make('figcaption', {}, word + ': no picture'));
    const part = 100 * picture.clippedPixels / picture.pixels;
    const clipped = picture.clippedPixels === 0 ? 'nothing clipped'
        : `${part < 0.1 ? '< 0.1' : part.toFixed(1)} % clipped`;
    const image = make('img', {alt: `Test chart ${word}, simulated`, className: 'chart'});
    image.src = image.dataset.plain = 'data:image/png;base64,' + picture.png;
    image.dataset.marked = picture.marked ? 'data:image/png;base64,' + picture.marked : image.dataset.plain;
    return make('figure', {}, image, make('figcaption', {}, `${word}: ${clipped}`));
}

function showSteps() {
    const {steps, pictures} = data.session;
    find('#steps > .note').textContent = 'The test chart as display 0 shows it (simulated), before and after each step. A pixel is clipped ' +
        'when the matrices leave it a channel below 0 or above 1 by more than 1/8192. Pictures at half size' +
        (steps.some((step) => step.after === null) ? '; without a composer there is none, and at most 60 different ones are kept.' : '.');
    find('.steps').append(...steps.map((step) => {
        const comment = step.comment.replace(/^#\s*/, '');
        const card = make('div', {className: 'card step'}, make('code', {}, `${step.line}  ${step.text}`));
        if (comment !== '') card.append(make('div', {className: 'comment'}, comment));
        if (step.answers.some((answer) => answer !== 'OK' && answer !== 0)) card.append(make('div', {className: 'comment'}, 'answer: ' + step.answers.join(', ')));
        card.append(step.before === step.after ? make('p', {}, 'The picture stays as it is.')
            : make('div', {className: 'pair'}, pictureFigure('before', step.before), pictureFigure('after', step.after)));
        return card;
    }));
    find('#mark').onchange = ({target}) => {
        for (const image of document.querySelectorAll('.chart')) image.src = target.checked ? image.dataset.marked : image.dataset.plain;
    };
    if (!pictures.some((picture) => picture.marked)) find('#mark').parentElement.remove();
}

// --- Light ---

function showLight() {
    const {light} = data;
    if (light === null) {
        find('#light .plots').replaceWith(make('p', {className: 'note'}, 'No light trace was given.'));
        return;
    }
    const {samples, messages, bright, dim} = light;
    const end = Math.max(...[samples, messages].flatMap((rows) => rows.slice(-1)).map(([ms]) => ms)) / 1000;
    const clock = (s) => (end < 600 ? short(s) : `${Math.floor(s / 3600)}:${String(Math.floor(s / 60) % 60).padStart(2, '0')}:${String(Math.round(s % 60)).padStart(2, '0')}`);
    const stepSize = end < 600 ? undefined : [60, 300, 600, 1800, 3600, 7200, 14400].find((step) => end / step <= 12);
    const time = {title: end < 600 ? 'simulated time, s' : 'simulated time, h:min:s', more: {min: 0, max: end, ticks: {callback: clock, includeBounds: false, stepSize}}};
    const lux = (column) => samples.map((row) => ({x: row[0] / 1000, y: Math.max(row[column], 1)}));
    const level = (text, value, color) => line(text, [{x: 0, y: value}, {x: end, y: value}], color, dashed);
    const decade = 10 ** Math.ceil(Math.log10(samples.reduce((most, row) => Math.max(most, row[1]), 10 * bright)));
    addPlot('lux', `Light of the trace ${light.name} as the service takes it once a second (simulated), and the mean of the middle three of the ` +
        'last five samples. Logarithmic; values below 1 lux are drawn at 1 lux.',
        (colors) => ({
            datasets: [
                line('mean', lux(2), colors.blue, {stepped: 'before'}), line('light', lux(1), colors.grey, {borderWidth: 1.2}),
                level(`on above ${bright} lux`, bright, colors.orange),
                level(`off below ${dim} lux`, dim, colors.green),
            ],
            x: time, y: {title: 'lux', more: {type: 'logarithmic', min: 1, max: decade}},
        }), (label, {x, y}) => `${label}: ${short(y)} lux at ${clock(x)}`);
    // Each message holds until the next.
    const held = messages.flatMap(([ms, value], i) => {
        const until = i + 1 < messages.length ? messages[i + 1][0] : end * 1000;
        return [{x: ms / 1000, y: value}, {x: until / 1000, y: value}];
    }).map((p) => (p.y === null ? {x: p.x, y: NaN} : p));
    addPlot('level', `Level of the tone curve that the composer holds (simulated), 0 to 64, and each of the ${grouped(messages.length)} ` +
        'messages to it. A message on the axis drops the curve.',
        (colors) => ({
            datasets: [
                line('level at the composer', held, colors.blue, {}),
                line('message', messages.filter((m) => m[1] !== null).map(([ms, y]) => ({x: ms / 1000, y})), colors.orange, {...dots, pointRadius: 1.5}),
                line('message that drops the curve', messages.filter((m) => m[1] === null).map(([ms]) => ({x: ms / 1000, y: 0})), colors.red,
                    {...dots, pointStyle: 'rectRot', clip: 8}),
            ].filter((dataset) => dataset.data.length > 0),
            x: time, y: {title: 'level', more: {min: 0, max: 64, ticks: {stepSize: 16}}},
        }), (label, {x, y}) => `${label}: ${y} at ${clock(x)}`,
        downloadButton('timeline.csv', () => [['seconds', 'event', 'lux', 'mean_lux', 'level'],
            ...[...samples.map(([ms, l, mean, value]) => [ms / 1000, 'sample', l, mean, value]),
                ...messages.map(([ms, value]) => [ms / 1000, 'message', null, null, value === null ? 'off' : value])]
                .sort((a, b) => a[0] - b[0])]));
}

// --- Calls ---

function matrixText(m) {
    const offDiagonal = m.filter((e, i) => i % 4 !== 0);
    if (offDiagonal.every((e) => e === 0)) {
        const diagonal = [m[0], m[4], m[8]];
        return diagonal.every((e) => e === 1) ? 'identity' : `diagonal (${diagonal.map(short).join(', ')})`;
    }
    return '(' + [0, 3, 6].map((i) => m.slice(i, i + 3).map(short).join(', ')).join('; ') + ')';
}

function argumentsText(call) {
    const parts = [];
    if (call.display !== undefined) parts.push('display ' + call.display);
    if (call.enable !== undefined) parts.push('enable ' + call.enable);
    if (call.first) parts.push('first ' + matrixText(call.first));
    if (call.last) parts.push('last ' + matrixText(call.last));
    if (call.table) parts.push(`${short(call.table[1024])} at 1024, ${short(call.table[2048])} at 2048`);
    const valuesText = (values) => values.length > 8 ? `${values.length} values` : values.join(' ') || 'no values';
    for (const {key, values, toneCurveLevel} of call.params || [])
        parts.push(`key ${key}: ` + (values ? valuesText(values) : 'tone curve of level ' + toneCurveLevel));
    return parts.join(', ');
}

function showCalls() {
    const rows = data.session.calls.map((call) => [(call.ms / 1000).toFixed(3), call.call, argumentsText(call), String(call.result)]);
    const heads = ['Time, s', 'Call', 'Arguments', 'Answer'];
    find('#calls .scroll').append(table(heads, rows, [0]));
    find('#calls .scroll').after(downloadButton('calls.csv', () => [['seconds', 'call', 'arguments', 'answer'], ...rows]));
}

// --- All of it ---

Chart.defaults.font.family = getComputedStyle(document.body).fontFamily;
find('#chart-version').textContent = 'Chart.js ' + Chart.version;
showAccuracy();
showSummary();
showFindings();
showGamma();
showColor();
showMatrices();
showSteps();
showLight();
showCalls();
drawAll();

matchMedia('(prefers-color-scheme: dark)').addEventListener('change', drawAll);
const printing = (on) => () => {
    document.documentElement.classList.toggle('printing', on);
    drawAll();
};
addEventListener('beforeprint', printing(true));
addEventListener('afterprint', printing(false));
