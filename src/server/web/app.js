// The web page of veldra serve: the component list, and a component's inputs, rows and chart.
// Everything is drawn here; the page loads nothing from other hosts.
"use strict";

const TABLE_ROWS = 500;   // rows shown in the table; the downloads hold all of them
const CHART_ROWS = 60;    // rows drawn in the chart
const PALETTE = ["#2f6fde", "#e0793a", "#2a9d6f", "#a353c9", "#d64572", "#6d7a8c"];
const SVG = "http://www.w3.org/2000/svg";

const main = document.getElementById("main");
const crumbs = document.getElementById("crumbs");

function element(tag, attributes = {}, ...children) {
  const node = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (name === "text") node.textContent = value;
    else if (name.startsWith("on")) node.addEventListener(name.slice(2), value);
    else if (value !== false && value !== undefined && value !== null) node.setAttribute(name, value === true ? "" : value);
  }
  for (const child of children) if (child) node.append(child);
  return node;
}

function svg(tag, attributes = {}) {
  const node = document.createElementNS(SVG, tag);
  for (const [name, value] of Object.entries(attributes)) node.setAttribute(name, value);
  return node;
}

// --- The API, with the token kept in this tab ---------------------------------------------

function askForToken(problem) {
  const dialog = document.getElementById("token-dialog");
  const input = document.getElementById("token-input");
  const said = document.getElementById("token-problem");
  said.hidden = !problem;
  said.textContent = problem || "";
  input.value = "";
  return new Promise((resolve) => {
    dialog.addEventListener("close", () => {
      sessionStorage.setItem("veldra-token", input.value.trim());
      resolve();
    }, { once: true });
    dialog.showModal();
  });
}

async function api(path, { signal, accept = "application/json" } = {}) {
  for (;;) {
    const token = sessionStorage.getItem("veldra-token");
    const headers = { Accept: accept };
    if (token) headers.Authorization = "Bearer " + token;
    const response = await fetch(path, { headers, signal });
    if (response.status !== 401) return response;
    const body = await response.json().catch(() => ({}));
    await askForToken(token ? body.reason : "");
  }
}

async function failure(response) {
  const body = await response.json().catch(() => null);
  return body && body.reason ? body.reason : `The service answered ${response.status} ${response.statusText}.`;
}

function componentPath(name) {
  return "/api/components/" + encodeURIComponent(name);
}

// --- The component list --------------------------------------------------------------------

async function showList() {
  document.title = "Veldra";
  crumbs.replaceChildren(element("span", { text: "Components" }));
  main.replaceChildren(element("p", { class: "empty", text: "Loading the components…" }));
  const response = await api("/api/components");
  if (!response.ok) {
    main.replaceChildren(element("p", { class: "problem", text: await failure(response) }));
    return;
  }
  const { components } = await response.json();
  const cards = element("div", { class: "cards" });
  for (const component of components) {
    const source = component.dataSource;
    const tags = element("div", { class: "tags" });
    for (const parameter of component.parameters || [])
      tags.append(element("span", { class: "tag", text: parameter.title || parameter.name }));
    cards.append(element("a", { class: "card", href: "/components/" + encodeURIComponent(component.name) },
      element("h2", { text: component.name }),
      component.error ? element("p", { text: component.error })
        : element("p", { text: source ? `${source.provider} · ${source.dsn}${source.catalog ? " · " + source.catalog : ""}` : "" }),
      tags.childElementCount ? tags : null));
  }
  main.replaceChildren(
    element("h1", { text: "Components" }),
    element("p", { class: "sub", text: components.length
      ? "Choose a component to set its inputs and see its rows."
      : "The folder holds no component documents (*.component.xml) yet." }),
    cards);
}

// --- A component's page -------------------------------------------------------------------

class ComponentPage {
  constructor(name) {
    this.name = name;
    this.values = new Map();   // input name -> value as sent
    this.controller = null;
    this.result = null;
    this.chart = { kind: "bar", label: null, series: null };
    this.reloaders = new Map(); // parameter name -> reads its list again
  }

  async show() {
    document.title = this.name + " · Veldra";
    crumbs.replaceChildren(element("span", {}, element("a", { href: "/", text: "Components" })),
                           element("span", { text: this.name }));
    main.replaceChildren(element("p", { class: "empty", text: "Loading…" }));
    const response = await api(componentPath(this.name));
    if (!response.ok) {
      main.replaceChildren(element("p", { class: "problem", text: await failure(response) }));
      return;
    }
    this.description = await response.json();
    this.build();
    this.refresh();
  }

  build() {
    const d = this.description;
    const source = d.dataSource;
    this.status = element("span", { class: "status", id: "row-status" });
    this.problem = element("p", { class: "problem", id: "problem", hidden: true });
    this.chartArea = element("div", { id: "chart" });
    this.tableArea = element("div", { id: "rows" });
    const toolbar = element("div", { class: "toolbar" }, this.status,
      element("button", { type: "button", id: "download-csv", onclick: () => this.download("csv"), text: "Download CSV" }),
      element("button", { type: "button", id: "download-json", onclick: () => this.download("json"), text: "Download JSON" }));
    main.replaceChildren(
      element("h1", { text: d.name }),
      element("p", { class: "sub", text: (source ? `${source.provider} · ${source.dsn}${source.catalog ? " · " + source.catalog : ""}` : "")
        + (d.source ? ` · runs on ${d.source}` : "") }),
      element("div", { class: "layout" },
        element("form", { class: "panel", id: "inputs", onsubmit: (event) => event.preventDefault() },
          element("h2", { text: "Inputs" }), ...this.inputFields()),
        element("div", {},
          element("section", { class: "panel" }, element("h2", { text: "Chart" }), this.chartArea),
          element("section", { class: "panel" }, toolbar, this.problem, this.tableArea))));
  }

  // The inputs as the component's pad offers them: the selections, the row count, the
  // ordering column and direction, and one input per parameter.
  inputFields() {
    const d = this.description;
    const fields = [];
    const change = (name, value, wait = 0) => {
      this.values.set(name, value);
      clearTimeout(this.timer);
      this.timer = setTimeout(() => this.refresh(), wait);
    };
    const selection = d.inputs.selection;
    if (selection && selection.items.length) {
      const chosen = new Set(selection.value ? selection.value.split(",") : selection.items);
      const box = element("div", { class: "checks", role: "group", "aria-label": "Columns" });
      for (const item of selection.items) {
        const check = element("input", { type: "checkbox", name: "selection", value: item, checked: chosen.has(item) });
        check.addEventListener("change", () => {
          const picked = [...box.querySelectorAll("input:checked")].map((c) => c.value);
          change("selection", picked.join(","));
        });
        box.append(element("label", {}, check, document.createTextNode(item)));
      }
      fields.push(element("div", { class: "field" }, element("span", { class: "label", text: "Columns" }), box));
    }
    const topN = d.inputs.TopN;
    if (topN) {
      const input = element("input", { type: "number", min: "1", step: "1", id: "input-TopN", value: topN.value });
      input.addEventListener("input", () => change("TopN", input.value, 400));
      fields.push(element("div", { class: "field" }, element("label", { for: "input-TopN", text: topN.label }), input));
    }
    const orderBy = d.inputs.OrderBy;
    if (orderBy) {
      const select = element("select", { id: "input-OrderBy" });
      for (const choice of orderBy.choices)
        select.append(element("option", { value: choice.value, text: choice.label, selected: choice.value === orderBy.value }));
      select.addEventListener("change", () => change("OrderBy", select.value));
      fields.push(element("div", { class: "field" }, element("label", { for: "input-OrderBy", text: orderBy.label }), select));
      const direction = d.inputs.OrderByAscendant;
      const way = element("select", { id: "input-OrderByAscendant" },
        element("option", { value: "true", text: "Ascending", selected: direction.value }),
        element("option", { value: "false", text: "Descending", selected: !direction.value }));
      way.addEventListener("change", () => change("OrderByAscendant", way.value));
      fields.push(element("div", { class: "field" }, element("label", { for: "input-OrderByAscendant", text: direction.label }), way));
    }
    for (const [index, parameter] of d.parameters.entries()) {
      const id = "parameter-" + index;
      let input;
      if (parameter.live || parameter.multiple) {
        fields.push(this.listField(parameter, id, change));
        continue;
      }
      if (parameter.kind === "list") {
        input = element("select", { id, "data-name": parameter.name });
        for (const choice of parameter.choices)
          input.append(element("option", { value: choice.value, text: choice.label, selected: choice.value === parameter.value }));
        input.addEventListener("change", () => change(parameter.name, input.value));
      } else if (parameter.kind === "typed") {
        input = element("input", { type: "text", id, "data-name": parameter.name, value: parameter.value, spellcheck: "false" });
        input.addEventListener("input", () => change(parameter.name, input.value, 500));
      } else {
        continue;
      }
      fields.push(element("div", { class: "field" }, element("label", { for: id, text: parameter.title || parameter.name }), input,
        element("div", { class: "hint", text: parameter.name })));
    }
    return fields;
  }

  // A list read from the data source, or one that takes several values: a search that narrows
  // it in the engine as the person types, and the list (several may be picked where allowed).
  // A change empties the lists that follow it, which the service then settles.
  listField(parameter, id, change) {
    const search = element("input", { type: "search", id: id + "-search", placeholder: "Type to narrow the list",
                                      "aria-label": "Narrow " + (parameter.title || parameter.name) });
    const select = element("select", { id, "data-name": parameter.name, multiple: !!parameter.multiple,
                                       size: parameter.multiple ? "6" : "1" });
    const note = element("div", { class: "hint note", id: id + "-note" });
    // Values picked before that this page of the list does not show stay picked.
    const chosen = () => {
      if (!parameter.multiple) return select.value;
      const shown = new Set([...select.options].map((o) => o.value));
      return [...picked.filter((v) => !shown.has(v)), ...[...select.selectedOptions].map((o) => o.value)];
    };
    let picked = parameter.multiple ? this.splitLiterals(parameter.value) : parameter.value;
    const fill = (choices, more, text) => {
      const keep = new Set(Array.isArray(picked) ? picked : [picked]);
      select.replaceChildren(...choices.map((c) => element("option", { value: c.value, text: c.label, selected: keep.has(c.value) })));
      if (more) select.append(element("option", { disabled: true, value: "", text: "… more: type to narrow the list" }));
      note.textContent = text || "";
    };
    fill(parameter.choices || [], parameter.more, parameter.note);
    const reload = async () => {
      const query = new URLSearchParams({ search: search.value });
      for (const [name, value] of this.values)
        if (name !== parameter.name) for (const v of [].concat(value)) query.append(name, v);
      const response = await api(componentPath(this.name) + "/lists/" + encodeURIComponent(parameter.name) + "?" + query);
      if (!response.ok) { note.textContent = await failure(response); return; }
      const page = await response.json();
      if (!this.values.has(parameter.name)) picked = parameter.multiple ? this.splitLiterals(page.value) : page.value;
      fill(page.choices, page.more, page.note);
    };
    this.reloaders.set(parameter.name, reload);
    let timer = null;
    search.addEventListener("input", () => { clearTimeout(timer); timer = setTimeout(reload, 120); });
    select.addEventListener("change", () => {
      picked = chosen();
      this.forgetFollowers(parameter.name);
      change(parameter.name, parameter.multiple && !picked.length ? [""] : picked);
    });
    return element("div", { class: "field" }, element("label", { for: id, text: parameter.title || parameter.name }),
      search, select, note, element("div", { class: "hint", text: parameter.name + (parameter.multiple ? " · several values" : "") }));
  }

  // The lists whose filter refers to name, at any depth, forget what was picked and read again.
  forgetFollowers(name) {
    const followers = new Set([name]);
    for (let grew = true; grew;) {
      grew = false;
      for (const p of this.description.parameters)
        if (!followers.has(p.name) && (p.dependsOn || []).some((n) => followers.has(n))) { followers.add(p.name); grew = true; }
    }
    followers.delete(name);
    for (const follower of followers) {
      this.values.delete(follower);
      setTimeout(() => this.reloaders.get(follower)?.(), 0);
    }
  }

  splitLiterals(text) {
    const out = [];
    let current = "", quoted = false;
    for (const c of text || "") {
      if (c === "'") quoted = !quoted;
      if (c === "," && !quoted) { out.push(current.trim()); current = ""; continue; }
      current += c;
    }
    if (current.trim()) out.push(current.trim());
    return out;
  }

  query(format) {
    const query = new URLSearchParams();
    for (const [name, value] of this.values) for (const v of [].concat(value)) query.append(name, v);
    if (format) query.set("format", format);
    const text = query.toString();
    return componentPath(this.name) + "/rows" + (text ? "?" + text : "");
  }

  async refresh() {
    if (this.controller) this.controller.abort();
    const controller = this.controller = new AbortController();
    main.querySelector(".layout > div").classList.add("busy");
    this.status.textContent = "Asking…";
    try {
      const response = await api(this.query(), { signal: controller.signal });
      if (!response.ok) {
        this.showProblem(await failure(response));
        return;
      }
      this.result = await response.json();
      this.problem.hidden = true;
      this.drawTable();
      this.drawChart();
    } catch (error) {
      if (error.name !== "AbortError") this.showProblem(String(error.message || error));
    } finally {
      if (this.controller === controller) main.querySelector(".layout > div").classList.remove("busy");
    }
  }

  // Rows of other inputs would mislead under the message: they go.
  showProblem(text) {
    this.problem.textContent = text;
    this.problem.hidden = false;
    this.status.textContent = "No rows";
    this.result = null;
    this.tableArea.replaceChildren();
    this.chartArea.replaceChildren(element("p", { class: "empty", text: "No rows to chart." }));
  }

  drawTable() {
    const { columns, rows, truncated } = this.result;
    const count = rows.length.toLocaleString("en");
    this.status.replaceChildren(element("strong", { text: count }), document.createTextNode(rows.length === 1 ? " row" : " rows"),
      truncated ? document.createTextNode(" · cut at the data source's row cap; there are more rows") : "",
      rows.length > TABLE_ROWS ? document.createTextNode(` · the first ${TABLE_ROWS} shown`) : "");
    if (!rows.length) {
      this.tableArea.replaceChildren(element("p", { class: "empty", text: "No rows match these inputs." }));
      return;
    }
    const head = element("tr", {}, ...columns.map((name) => element("th", { scope: "col", text: name })));
    const body = element("tbody");
    for (const row of rows.slice(0, TABLE_ROWS)) {
      body.append(element("tr", {}, ...row.map((value) => {
        if (value === null) return element("td", { class: "null", text: "NULL" });
        if (typeof value === "number") return element("td", { class: "num", text: value.toLocaleString("en", { maximumFractionDigits: 10 }) });
        if (typeof value === "object") return element("td", { class: "null", text: "(binary)" });
        return element("td", { text: String(value) });
      })));
    }
    this.tableArea.replaceChildren(element("div", { class: "table-wrap" }, element("table", {}, element("thead", {}, head), body)));
  }

  // A bar or line chart of the numeric columns over a label column.
  drawChart() {
    const { columns, rows } = this.result;
    const numeric = columns.map((_, i) => rows.length > 0 && rows.every((row) => row[i] === null || typeof row[i] === "number"));
    const labels = columns.map((_, i) => i).filter((i) => !numeric[i]);
    const values = columns.map((_, i) => i).filter((i) => numeric[i]);
    if (!rows.length || !values.length) {
      this.chartArea.replaceChildren(element("p", { class: "empty", text: rows.length
        ? "The rows have no numeric column to chart." : "No rows to chart." }));
      return;
    }
    const chart = this.chart;
    if (chart.label === null || !columns[chart.label] || numeric[chart.label]) chart.label = mostTelling(labels, rows);
    if (!chart.series || chart.series.some((i) => !numeric[i])) chart.series = values.slice(-1);
    const redraw = () => this.drawChart();

    const kind = element("div", { class: "segmented", role: "group", "aria-label": "Chart type" },
      ...["bar", "line"].map((name) => element("button", { type: "button", "aria-pressed": String(chart.kind === name),
        id: "chart-" + name, text: name === "bar" ? "Bars" : "Lines", onclick: () => { chart.kind = name; redraw(); } })));
    const labelSelect = element("select", { id: "chart-label" },
      element("option", { value: "-1", text: "Row number", selected: chart.label === -1 }),
      ...labels.map((i) => element("option", { value: String(i), text: columns[i], selected: chart.label === i })));
    labelSelect.addEventListener("change", () => { chart.label = Number(labelSelect.value); redraw(); });
    const series = element("div", { class: "series" });
    values.forEach((column) => {
      const on = chart.series.includes(column);
      const check = element("input", { type: "checkbox", value: String(column), checked: on });
      check.addEventListener("change", () => {
        chart.series = check.checked ? [...chart.series, column].sort((a, b) => a - b) : chart.series.filter((c) => c !== column);
        redraw();
      });
      const swatch = element("span", { class: "swatch" });
      swatch.style.background = on ? PALETTE[chart.series.indexOf(column) % PALETTE.length] : "#d5dae2";
      series.append(element("label", {}, check, swatch, document.createTextNode(columns[column])));
    });
    const controls = element("div", { class: "chart-controls" },
      element("div", { class: "field" }, element("span", { class: "label", text: "Type" }), kind),
      element("div", { class: "field" }, element("label", { for: "chart-label", text: "Labels" }), labelSelect),
      element("div", { class: "field" }, element("span", { class: "label", text: "Values" }), series));
    const shown = rows.slice(0, CHART_ROWS);
    const picture = plot(shown.map((row, i) => chart.label >= 0 ? formatLabel(row[chart.label]) : String(i + 1)),
      chart.series.map((column, n) => ({ name: columns[column], color: PALETTE[n % PALETTE.length], values: shown.map((row) => row[column]) })),
      chart.kind);
    this.chartArea.replaceChildren(controls, picture,
      rows.length > CHART_ROWS ? element("p", { class: "note", text: `The chart shows the first ${CHART_ROWS} of ${rows.length} rows.` }) : "");
  }

  async download(format) {
    const response = await api(this.query(format), { accept: format === "csv" ? "text/csv" : "application/json" });
    if (!response.ok) {
      this.showProblem(await failure(response));
      return;
    }
    const url = URL.createObjectURL(await response.blob());
    const link = element("a", { href: url, download: `${this.name}.${format}` });
    document.body.append(link);
    link.click();
    link.remove();
    setTimeout(() => URL.revokeObjectURL(url), 10000);
  }
}

// The label column that tells the rows apart best: the most distinct values, the first on a tie.
function mostTelling(labels, rows) {
  let best = -1, most = 0;
  for (const column of labels) {
    const distinct = new Set(rows.slice(0, CHART_ROWS).map((row) => formatLabel(row[column]))).size;
    if (distinct > most) { best = column; most = distinct; }
  }
  return best;
}

function formatLabel(value) {
  if (value === null) return "NULL";
  if (typeof value === "object") return "(binary)";
  return String(value);
}

// Round steps for an axis from low to high: about five of them.
function ticks(low, high) {
  if (low === high) { high = low + 1; }
  const rough = (high - low) / 5;
  const power = Math.pow(10, Math.floor(Math.log10(rough)));
  const step = [1, 2, 2.5, 5, 10].map((f) => f * power).find((s) => s >= rough);
  const first = Math.floor(low / step) * step;
  const marks = [];
  for (let v = first; ; v += step) {
    marks.push(Number(v.toPrecision(12)));
    if (v >= high) return marks;
  }
}

function shortNumber(value) {
  const size = Math.abs(value);
  if (size >= 1e9) return (value / 1e9).toLocaleString("en", { maximumFractionDigits: 1 }) + "B";
  if (size >= 1e6) return (value / 1e6).toLocaleString("en", { maximumFractionDigits: 1 }) + "M";
  if (size >= 1e4) return (value / 1e3).toLocaleString("en", { maximumFractionDigits: 1 }) + "k";
  return value.toLocaleString("en", { maximumFractionDigits: 2 });
}

function plot(labels, series, kind) {
  const width = 880, height = 320;
  const margin = { top: 16, right: 16, bottom: labels.length > 8 ? 84 : 40, left: 64 };
  const all = series.flatMap((s) => s.values).filter((v) => v !== null);
  const marks = ticks(Math.min(0, ...all), Math.max(0, ...all));
  const low = marks[0], high = marks[marks.length - 1];
  const plotWidth = width - margin.left - margin.right, plotHeight = height - margin.top - margin.bottom;
  const y = (v) => margin.top + plotHeight - ((v - low) / (high - low || 1)) * plotHeight;
  const band = plotWidth / Math.max(labels.length, 1);
  const x = (i) => margin.left + band * i + band / 2;
  const picture = svg("svg", { class: "chart", viewBox: `0 0 ${width} ${height}`, role: "img", "aria-label": "Chart of the rows" });

  for (const mark of marks) {
    picture.append(svg("line", { class: "grid", x1: margin.left, x2: width - margin.right, y1: y(mark), y2: y(mark) }));
    const text = svg("text", { x: margin.left - 8, y: y(mark) + 4, "text-anchor": "end" });
    text.textContent = shortNumber(mark);
    picture.append(text);
  }
  picture.append(svg("line", { class: "axis", x1: margin.left, x2: width - margin.right, y1: y(0), y2: y(0) }));

  const every = Math.ceil(labels.length / 30);
  labels.forEach((label, i) => {
    if (i % every) return;
    const short = label.length > 16 ? label.slice(0, 15) + "…" : label;
    const text = svg("text", labels.length > 8
      ? { x: x(i), y: height - margin.bottom + 14, "text-anchor": "end", transform: `rotate(-40 ${x(i)} ${height - margin.bottom + 14})` }
      : { x: x(i), y: height - margin.bottom + 18, "text-anchor": "middle" });
    text.textContent = short;
    const title = svg("title");
    title.textContent = label;
    text.append(title);
    picture.append(text);
  });

  if (kind === "bar") {
    const inner = band * 0.72, barWidth = inner / Math.max(series.length, 1);
    series.forEach((s, n) => s.values.forEach((value, i) => {
      if (value === null) return;
      const left = margin.left + band * i + (band - inner) / 2 + barWidth * n;
      const top = Math.min(y(value), y(0));
      const bar = svg("rect", { x: left, y: top, width: Math.max(barWidth - 2, 1), height: Math.max(Math.abs(y(value) - y(0)), 1), fill: s.color, rx: 2 });
      const title = svg("title");
      title.textContent = `${labels[i]} · ${s.name}: ${value.toLocaleString("en")}`;
      bar.append(title);
      picture.append(bar);
    }));
  } else {
    for (const s of series) {
      const points = s.values.map((value, i) => value === null ? null : `${x(i)},${y(value)}`).filter(Boolean);
      picture.append(svg("polyline", { points: points.join(" "), fill: "none", stroke: s.color, "stroke-width": 2.5, "stroke-linejoin": "round" }));
      s.values.forEach((value, i) => {
        if (value === null) return;
        const dot = svg("circle", { cx: x(i), cy: y(value), r: 3.5, fill: s.color });
        const title = svg("title");
        title.textContent = `${labels[i]} · ${s.name}: ${value.toLocaleString("en")}`;
        dot.append(title);
        picture.append(dot);
      });
    }
  }
  return picture;
}

// --- Routing ------------------------------------------------------------------------------

function route() {
  const match = location.pathname.match(/^\/components\/([^/]+)$/);
  const shown = match ? new ComponentPage(decodeURIComponent(match[1])).show() : showList();
  shown.catch((error) => main.replaceChildren(element("p", { class: "problem", text: String(error.message || error) })));
}

route();
